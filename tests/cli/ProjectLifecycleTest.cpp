// Creating and deleting projects against other processes and leftovers: files that no registry
// row names are never taken over, concurrent `new` of one name make one row, names with control
// characters are refused, and start URLs are stored in the form the crawl compares links with.
#include "SlowTestSite.h"
#include "support/CliProcess.h"
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"
#include "support/RawTcpServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>
#include <random>
#include <vector>

namespace {

class ProjectLifecycle : public ::testing::Test {
protected:
    CliResult run(const QStringList& args) { return runCli(args, dir.path()); }

    // The registry's rows: name and URL.
    QList<QStringList> rows()
    {
        QList<QStringList> all;
        sqlite3* db = nullptr;
        // Read-write: a registry left by a process killed outright may need its log recovered.
        if (sqlite3_open_v2((dir.path() + "/Quillmere.storedata").toUtf8().constData(), &db, SQLITE_OPEN_READWRITE,
                            nullptr) != SQLITE_OK) {
            sqlite3_close(db);
            return all;
        }
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(db, "select name, url from Project", -1, &s, nullptr) == SQLITE_OK) {
            while (sqlite3_step(s) == SQLITE_ROW)
                all.append({QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, 0))),
                            QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, 1)))});
        }
        sqlite3_finalize(s);
        sqlite3_close(db);
        return all;
    }

    int rowsNamed(const QString& name)
    {
        int n = 0;
        for (const auto& row : rows())
            n += row.value(0) == name;
        return n;
    }

    static int pageRows(const QString& database)
    {
        sqlite3* db = nullptr;
        int count = -1;
        if (sqlite3_open_v2(database.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
            sqlite3_stmt* s = nullptr;
            if (sqlite3_prepare_v2(db, "select count(*) from Page", -1, &s, nullptr) == SQLITE_OK
                && sqlite3_step(s) == SQLITE_ROW)
                count = sqlite3_column_int(s, 0);
            sqlite3_finalize(s);
        }
        sqlite3_close(db);
        return count;
    }

    QTemporaryDir dir;
};

TEST_F(ProjectLifecycle, ADatabaseNoProjectNamesIsNotTakenOverByNew)
{
    LocalHttpServer server;
    SlowTestSite::serve(server, 0);
    ASSERT_TRUE(server.start());
    const QString base = QString::fromStdString(server.baseUrl());
    ASSERT_EQ(run({"new", "site", base}).exitCode, 0);
    ASSERT_EQ(run({"crawl", "site"}).exitCode, 0);
    const int pages = pageRows(dir.path() + "/site.sqlite");
    ASSERT_GT(pages, 0);

    // The registry is lost (or emptied): the crawl database stays, named by no row.
    ASSERT_TRUE(QFile::remove(dir.path() + "/Quillmere.storedata"));
    const CliResult r = run({"new", "site", "http://other.example"});
    EXPECT_EQ(r.exitCode, 2) << r.out.toStdString();
    EXPECT_TRUE(r.err.contains(dir.path() + "/site.sqlite")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("belongs to no project")) << r.err.toStdString();
    EXPECT_EQ(rows().size(), 0);
    EXPECT_EQ(pageRows(dir.path() + "/site.sqlite"), pages);  // left as it was

    // Moved aside, the name is free again and starts empty.
    for (const QString& file : QDir(dir.path()).entryList({"site.sqlite*"}, QDir::Files))
        ASSERT_TRUE(QFile::rename(dir.path() + "/" + file, dir.path() + "/old-" + file));
    QFile::remove(dir.path() + "/site_errors.log");
    const CliResult again = run({"new", "site", "http://other.example"});
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(pageRows(dir.path() + "/site.sqlite"), 0);
}

TEST_F(ProjectLifecycle, AKilledCrawlUrlLeavesAProjectNotAnOrphanDatabase)
{
    // A server that never answers: the crawl is killed while it waits for robots.txt, before
    // anything of it has been committed.
    std::atomic<int> asked{0};
    RawTcpServer silent([&asked](RawTcpServer::Connection& connection) {
        ++asked;
        connection.waitForStop(30000);
    });
    ASSERT_TRUE(silent.start());
    {
        CliProcess crawl({"crawl-url", QString::fromStdString(silent.baseUrl()), "--name", "quick"}, dir.path());
        ASSERT_TRUE(crawl.started());
        for (int i = 0; i < 2000 && asked < 1; ++i)
            QThread::msleep(5);
        ASSERT_GE(asked.load(), 1);
        crawl.signal(SIGKILL);
        ASSERT_TRUE(crawl.wait(10000));
    }
    silent.stop();
    // The project was saved before its crawl began: its database has a row, and a later
    // project of that name is refused instead of taking the database over.
    EXPECT_EQ(rowsNamed("quick"), 1);
    const CliResult r = run({"new", "quick", "http://other.example"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("exists already")) << r.err.toStdString();
    EXPECT_EQ(rowsNamed("quick"), 1);
    EXPECT_EQ(run({"check", "quick"}).exitCode, 0);
    EXPECT_EQ(run({"show", "quick"}).exitCode, 0);
}

TEST_F(ProjectLifecycle, TenConcurrentNewOfOneNameMakeOneProject)
{
    for (int round = 0; round < 3; ++round) {
        const QString name = QStringLiteral("same%1").arg(round);
        std::vector<std::unique_ptr<CliProcess>> processes;
        for (int i = 0; i < 10; ++i)
            processes.push_back(std::make_unique<CliProcess>(
                QStringList{"new", name, QStringLiteral("http://site%1.example").arg(i)}, dir.path()));
        int created = 0, refused = 0;
        for (auto& p : processes) {
            ASSERT_TRUE(p->wait(60000));
            if (p->exitCode() == 0)
                ++created;
            else if (p->exitCode() == 2 && p->err().contains("exists already"))
                ++refused;
            else
                ADD_FAILURE() << p->exitCode() << " " << p->err().toStdString();
        }
        EXPECT_EQ(created, 1) << name.toStdString();
        EXPECT_EQ(refused, 9) << name.toStdString();
        EXPECT_EQ(rowsNamed(name), 1) << name.toStdString();
        EXPECT_EQ(run({"check", name}).exitCode, 0);
    }
}

TEST_F(ProjectLifecycle, NamesWithControlCharactersAreRefused)
{
    for (const QString& name : {QStringLiteral("a\tb"), QStringLiteral("line\nbreak"), QStringLiteral("bell\a"),
                                QStringLiteral("esc\x1b[31m"), QStringLiteral("del\x7f")}) {
        const CliResult r = run({"new", name, "http://example.com"});
        EXPECT_EQ(r.exitCode, 2) << name.toStdString();
        EXPECT_TRUE(r.err.contains("control characters")) << r.err.toStdString();
    }
    EXPECT_EQ(rows().size(), 0);
    EXPECT_EQ(QDir(dir.path()).entryList({"*.sqlite"}, QDir::Files), QStringList());
}

TEST_F(ProjectLifecycle, StartURLsAreStoredInTheFormTheCrawlUses)
{
    struct Case {
        QString typed;
        QString stored;
    };
    const Case cases[] = {
        {"HTTP://Example.COM/Path/Page.html", "http://example.com/Path/Page.html"},
        {"http://example.com/docs/#intro", "http://example.com/docs/"},
        {"https://bücher.example/", "https://xn--bcher-kva.example"},
        {"http://user@MIXED.example:8080/a?b=C#d", "http://user@mixed.example:8080/a?b=C"},
    };
    int n = 0;
    for (const Case& c : cases) {
        const QString name = QStringLiteral("p%1").arg(n++);
        const CliResult r = run({"new", name, c.typed});
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        // The terminal never shows a URL's credentials; the registry keeps them.
        const QString shown = QString(c.stored).replace("//user@", "//***@");
        EXPECT_TRUE(r.out.contains("stored as " + shown)) << r.out.toStdString();
        bool found = false;
        for (const auto& row : rows())
            if (row.value(0) == name) {
                found = true;
                EXPECT_EQ(row.value(1), c.stored) << c.typed.toStdString();
            }
        EXPECT_TRUE(found);
    }
    // A URL already in that form is stored as typed, without a word about it.
    const CliResult plain = run({"new", "plain", "http://example.com/a"});
    ASSERT_EQ(plain.exitCode, 0);
    EXPECT_FALSE(plain.out.contains("stored as")) << plain.out.toStdString();
}

TEST_F(ProjectLifecycle, AnUpperCaseSchemeWithAFragmentCrawlsTheWholeSite)
{
    LocalHttpServer server;
    SlowTestSite::serve(server, 0);
    ASSERT_TRUE(server.start());
    const QString base = QString::fromStdString(server.baseUrl());
    ASSERT_EQ(run({"new", "plain", base}).exitCode, 0);
    ASSERT_EQ(run({"crawl", "plain"}).exitCode, 0);
    QString shouting = base;
    shouting.replace(0, 4, "HTTP");
    const CliResult created = run({"new", "shouting", shouting + "/#top"});
    ASSERT_EQ(created.exitCode, 0) << created.err.toStdString();
    const CliResult crawled = run({"crawl", "shouting"});
    ASSERT_EQ(crawled.exitCode, 0) << crawled.err.toStdString();
    const int pages = pageRows(dir.path() + "/plain.sqlite");
    EXPECT_GT(pages, 10);
    EXPECT_EQ(pageRows(dir.path() + "/shouting.sqlite"), pages);

    // crawl-url keeps to the same rule.
    const CliResult once = run({"crawl-url", shouting + "/#top", "--name", "once"});
    ASSERT_EQ(once.exitCode, 0) << once.err.toStdString();
    EXPECT_TRUE(once.err.contains("stored as " + base + "/")) << once.err.toStdString();
    EXPECT_EQ(pageRows(dir.path() + "/once.sqlite"), pages);
}

// `new` and `delete` killed outright at random moments, several at once on a few names. After
// each round: one row at most per name; every row's database is there and sound (a delete
// removes the row before the files, so a delete cut short never leaves a row without its
// database); and a database that no row names is refused by the next `new`, never taken over.
TEST_F(ProjectLifecycle, NewAndDeleteKilledAtRandomMomentsKeepRegistryAndFilesConsistent)
{
    std::mt19937 random(20261124);
    const QStringList names{"alpha", "beta"};
    int killedMidway = 0, refusedLeftovers = 0;
    for (int round = 0; round < 24; ++round) {
        std::vector<std::unique_ptr<CliProcess>> processes;
        for (int i = 0; i < 4; ++i) {
            const QString name = names.at(int(random() % names.size()));
            const bool create = random() % 2 == 0;
            processes.push_back(std::make_unique<CliProcess>(
                create ? QStringList{"new", name, "http://example.com/" + name} : QStringList{"delete", name},
                dir.path()));
        }
        // Each one killed (or not) at a moment of its own, from its start to its end.
        std::uniform_int_distribution<int> moment(0, 80);
        std::vector<std::pair<int, size_t>> kills;
        for (size_t i = 0; i < processes.size(); ++i)
            if (random() % 3 != 0)
                kills.emplace_back(moment(random), i);
        std::sort(kills.begin(), kills.end());
        int now = 0;
        for (const auto& [at, index] : kills) {
            QThread::msleep(at - now);
            now = at;
            processes[index]->signal(SIGKILL);
        }
        for (auto& p : processes) {
            ASSERT_TRUE(p->wait(60000));
            killedMidway += p->termSignal() == SIGKILL;
        }

        for (const QString& name : names) {
            const int count = rowsNamed(name);
            ASSERT_LE(count, 1) << name.toStdString() << " round " << round;
            const QString database = dir.path() + "/" + name + ".sqlite";
            if (count == 1) {
                EXPECT_TRUE(QFileInfo::exists(database)) << name.toStdString() << " round " << round;
                const CliResult check = run({"check", name});
                EXPECT_EQ(check.exitCode, 0) << check.out.toStdString() << check.err.toStdString();
                continue;
            }
            // No row: whatever files the killed processes left must be refused, not adopted.
            const bool leftovers = QFileInfo::exists(database) || QFileInfo::exists(database + "-journal")
                                   || QFileInfo::exists(dir.path() + "/" + name + "_errors.log")
                                   || QFileInfo::exists(dir.path() + "/Logs/" + name + ".log");
            const CliResult r = run({"new", name, "http://example.com/" + name});
            if (leftovers) {
                ++refusedLeftovers;
                EXPECT_EQ(r.exitCode, 2) << name.toStdString() << " round " << round;
                EXPECT_TRUE(r.err.contains("belongs to no project")) << r.err.toStdString();
                // Cleared by hand, as the message asks, so later rounds go on.
                for (const QString& file : QDir(dir.path()).entryList({name + ".sqlite*", name + "_errors.log"}))
                    QFile::remove(dir.path() + "/" + file);
                QFile::remove(dir.path() + "/Logs/" + name + ".log");
            } else {
                EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
                EXPECT_EQ(rowsNamed(name), 1);
            }
        }
    }
    std::printf("killed %d processes, %d leftovers refused\n", killedMidway, refusedLeftovers);
}

} // namespace
