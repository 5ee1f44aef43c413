#include "support/CliRunner.h"
#include "support/UnprivilegedRun.h"
#include "support/LocalHttpServer.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sqlite3.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::string page(const std::string& title, const std::string& body)
{
    return "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
}

// Every file under the data directory: its size, contents and modification time. A -shm
// file is named only: a reader beside a log shares it, and its contents are the readers'
// bookkeeping, not the database.
QMap<QString, QString> filesOf(const QString& directory)
{
    QMap<QString, QString> files;
    QDirIterator it(directory, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QFileInfo info(path);
        const QString name = QDir(directory).relativeFilePath(path);
        if (info.isDir() || name.endsWith(QStringLiteral("-shm"))) {
            files.insert(name, QStringLiteral("present"));
            continue;
        }
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        files.insert(name, QStringLiteral("%1 %2 %3")
                               .arg(info.size())
                               .arg(QString::fromLatin1(QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5).toHex()))
                               .arg(info.lastModified().toMSecsSinceEpoch()));
    }
    return files;
}

bool exec(sqlite3* db, const char* sql)
{
    return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

QString oneText(const QString& file, const char* sql)
{
    sqlite3* db = nullptr;
    QString text;
    if (sqlite3_open_v2(QFile::encodeName(file).constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW)
            text = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return text;
}

class ReadOnlyReaders : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
        server.setPage("/", page("Home", "<a href=\"/a.html\">A</a><a href=\"/gone.html\">Gone</a>"));
        server.setPage("/a.html", page("A", "<a href=\"/\">home</a>"));
        server.setPage("/gone.html", "gone", "text/html", 404);
        ASSERT_EQ(run({"new", "site", base}).exitCode, 0);
        const CliResult crawl = run({"crawl", "site"});
        ASSERT_EQ(crawl.exitCode, 0) << crawl.err.toStdString();
        database = dir.filePath(QStringLiteral("site.sqlite"));
    }
    CliResult run(const QStringList& args) { return runCli(args, dir.path()); }

    // Every command that only reads, each answering 0.
    void readAll(const char* where)
    {
        const QList<QStringList> readers{{"show", "site"},   {"pages", "site"},     {"links", "site", base + "/a.html"},
                                         {"broken", "site"}, {"redirects", "site"}, {"sitemap", "site"},
                                         {"check", "site"},  {"projects"}};
        for (const auto& args : readers) {
            const CliResult r = run(args);
            EXPECT_EQ(r.exitCode, 0) << where << ": " << args.join(' ').toStdString() << "\n" << r.err.toStdString();
        }
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
    QString database;
};

TEST_F(ReadOnlyReaders, ReadersChangeNothingInTheDataDirectory)
{
    const auto before = filesOf(dir.path());
    readAll("after a crawl");
    EXPECT_EQ(filesOf(dir.path()), before);
}

TEST_F(ReadOnlyReaders, ADatabaseOfAnEarlierVersionIsReadAsItIs)
{
    // Before the fetch log, and in the rollback-journal mode.
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(database).constData(), &db), SQLITE_OK);
    ASSERT_TRUE(exec(db, "drop table FetchLog"));
    ASSERT_TRUE(exec(db, "PRAGMA journal_mode=DELETE"));
    sqlite3_close(db);
    const auto before = filesOf(dir.path());

    readAll("earlier version");
    const CliResult broken = run({"broken", "site", "--format", "csv"});
    EXPECT_EQ(broken.exitCode, 0);
    EXPECT_FALSE(broken.out.contains("gone.html")) << broken.out.toStdString();  // no fetch log: nothing known broken
    const CliResult pages = run({"pages", "site", "--format", "csv"});
    EXPECT_TRUE(pages.out.contains(base + "/a.html")) << pages.out.toStdString();

    EXPECT_EQ(filesOf(dir.path()), before);
    EXPECT_EQ(oneText(database, "select count(*) from sqlite_master where name='FetchLog'"), QStringLiteral("0"));
    EXPECT_EQ(oneText(database, "PRAGMA journal_mode"), QStringLiteral("delete"));
}

// A crawl killed outright leaves its last commits in the -wal: readers see them and leave
// the log where it is, with or without the -shm beside it.
TEST_F(ReadOnlyReaders, ReadersSeeTheLogOfAKilledCrawlAndKeepIt)
{
    for (const bool withShm : {true, false}) {
        QTemporaryDir copy;
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(QFile::encodeName(database).constData(), &db), SQLITE_OK);
        ASSERT_TRUE(exec(db, "PRAGMA wal_autocheckpoint=0"));
        ASSERT_TRUE(exec(db, withShm ? "update Page set title='Logged A' where url like '%/a.html'"
                                     : "update Page set title='Copied A' where url like '%/a.html'"));
        // Copied while the connection is open: as a kill -9 leaves them.
        for (const QString& name : QDir(dir.path()).entryList(QDir::Files)) {
            if (!withShm && name.endsWith(QStringLiteral("-shm")))
                continue;
            ASSERT_TRUE(QFile::copy(dir.filePath(name), copy.filePath(name))) << name.toStdString();
        }
        QDir().mkpath(copy.filePath(QStringLiteral("Logs")));
        sqlite3_close(db);
        ASSERT_TRUE(QFileInfo::exists(copy.filePath(QStringLiteral("site.sqlite-wal"))));
        ASSERT_GT(QFileInfo(copy.filePath(QStringLiteral("site.sqlite-wal"))).size(), 0);

        const auto before = filesOf(copy.path());
        const CliResult pages = runCli({"pages", "site", "--format", "csv"}, copy.path());
        EXPECT_EQ(pages.exitCode, 0) << pages.err.toStdString();
        EXPECT_TRUE(pages.out.contains(withShm ? "Logged A" : "Copied A")) << pages.out.toStdString();
        for (const char* command : {"show", "check", "broken", "sitemap"}) {
            const CliResult r = runCli({command, "site"}, copy.path());
            EXPECT_EQ(r.exitCode, 0) << command << " " << r.err.toStdString();
        }
        EXPECT_EQ(filesOf(copy.path()), before) << (withShm ? "with" : "without") << " its -shm";
    }
}

TEST_F(ReadOnlyReaders, AnEmptyFileStaysEmpty)
{
    QFile::resize(database, 0);
    const auto before = filesOf(dir.path());
    for (const char* command : {"show", "pages", "check", "broken"}) {
        const CliResult r = run({command, "site"});
        EXPECT_EQ(r.exitCode, 2) << command;
    }
    EXPECT_EQ(QFileInfo(database).size(), 0);
    EXPECT_EQ(filesOf(dir.path()), before);
}

// Root writes through permissions: there the readers run as an unprivileged user.
TEST_F(ReadOnlyReaders, ReadersWorkInADataDirectoryTheyCannotWrite)
{
    openTo(dir.path(), false);
    ASSERT_EQ(::chmod(QFile::encodeName(dir.path()).constData(), 0555), 0);
    const auto before = filesOf(dir.path());
    const QList<QStringList> readers{{"show", "site"},   {"pages", "site"},     {"links", "site", base + "/a.html"},
                                     {"broken", "site"}, {"redirects", "site"}, {"sitemap", "site"},
                                     {"check", "site"},  {"projects"}};
    for (const auto& args : readers) {
        const CliResult r = runUnprivileged(args, dir.path());
        EXPECT_EQ(r.exitCode, 0) << args.join(' ').toStdString() << "\n" << r.err.toStdString();
    }
    EXPECT_EQ(filesOf(dir.path()), before);
    ::chmod(QFile::encodeName(dir.path()).constData(), 0755);
}

TEST_F(ReadOnlyReaders, ARestartOnADatabaseItCannotWriteFails)
{
    openTo(dir.path(), true);
    ASSERT_EQ(::chmod(QFile::encodeName(database).constData(), 0444), 0);
    const size_t requests = server.requestCount();
    const CliResult r = runUnprivileged({"crawl", "site", "--restart"}, dir.path());
    EXPECT_EQ(r.exitCode, 1) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("cannot be written")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(database)) << r.err.toStdString();
    EXPECT_EQ(server.requestCount(), requests);
}

TEST_F(ReadOnlyReaders, AMissingDatabaseIsNotMadeAfreshByContinueOrVacuum)
{
    ASSERT_TRUE(QFile::remove(database));
    const size_t requests = server.requestCount();
    for (const QStringList& args : QList<QStringList>{{"crawl", "site", "--continue"}, {"crawl", "site"}, {"vacuum", "site"}}) {
        const CliResult r = run(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString() << r.out.toStdString();
        EXPECT_TRUE(r.err.contains(database)) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("--restart")) << r.err.toStdString();
        EXPECT_FALSE(QFileInfo::exists(database)) << args.join(' ').toStdString();
    }
    EXPECT_EQ(server.requestCount(), requests);

    // --restart starts over, from a count of 0.
    const CliResult r = run({"crawl", "site", "--restart"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Pages analysed: 3 (this run: 3)")) << r.out.toStdString();
    EXPECT_EQ(run({"check", "site"}).exitCode, 0);
}

} // namespace

// Commands that only read make nothing: not the data directory, not its "Logs" folder, not an
// empty registry.
TEST(ReadOnlyReadersWithoutRegistry, ADataDirectoryThatDoesNotExistIsNotMade)
{
    QTemporaryDir parent;
    ASSERT_TRUE(parent.isValid());
    const QString absent = parent.path() + "/data";
    const CliResult projects = runCli({"projects"}, absent);
    EXPECT_EQ(projects.exitCode, 0) << projects.err.toStdString();
    EXPECT_TRUE(projects.out.contains("No projects")) << projects.out.toStdString();
    for (const char* command : {"show", "pages", "links", "broken", "redirects", "sitemap", "check"}) {
        QStringList arguments{command, "site"};
        if (QString(command) == "links")
            arguments << "http://127.0.0.1:9/";
        const CliResult r = runCli(arguments, absent);
        EXPECT_EQ(r.exitCode, 2) << command << ": " << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("no project named 'site'")) << command << ": " << r.err.toStdString();
    }
    EXPECT_FALSE(QFileInfo::exists(absent));

    // An empty directory stays empty.
    ASSERT_TRUE(QDir().mkpath(absent));
    EXPECT_EQ(runCli({"projects"}, absent).exitCode, 0);
    EXPECT_EQ(runCli({"show", "site"}, absent).exitCode, 2);
    EXPECT_TRUE(QDir(absent).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).isEmpty());
}

// A registry written before a column was added is read as it is: the column reads as unset,
// and the file is not altered to add it.
TEST_F(ReadOnlyReaders, ARegistryOfAnEarlierBuildIsReadWithoutBeingAltered)
{
    const QString store = dir.path() + "/Quillmere.storedata";
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(store).constData(), &db), SQLITE_OK);
    ASSERT_TRUE(exec(db, "alter table Project drop column explore_sitewides"));
    sqlite3_close(db);
    const auto before = filesOf(dir.path());

    const CliResult projects = run({"projects"});
    EXPECT_EQ(projects.exitCode, 0) << projects.err.toStdString();
    EXPECT_TRUE(projects.out.contains("site")) << projects.out.toStdString();
    readAll("earlier registry");

    EXPECT_EQ(filesOf(dir.path()), before);
    EXPECT_EQ(oneText(store, "select count(*) from pragma_table_info('Project') where name='explore_sitewides'"),
              QStringLiteral("0"));
}

// A registry whose save was cut short by a kill keeps a journal that only a writer can roll
// back: the commands that read put it back as it was before that save and go on.
TEST_F(ReadOnlyReaders, ARegistrySaveCutShortIsRolledBackAndRead)
{
    const QString store = dir.path() + "/Quillmere.storedata";
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        // A save that spills into the file before it commits, then dies.
        sqlite3* db = nullptr;
        if (sqlite3_open(QFile::encodeName(store).constData(), &db) != SQLITE_OK)
            ::_exit(2);
        sqlite3_exec(db, "PRAGMA cache_size=1; begin; update Project set url='http://changed.example';"
                         "create table Filler(x); insert into Filler select randomblob(4096) from "
                         "(with recursive n(i) as (select 1 union all select i+1 from n where i<200) select i from n)",
                     nullptr, nullptr, nullptr);
        ::_exit(0);
    }
    int status = 0;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_TRUE(QFileInfo::exists(store + "-journal"));

    const CliResult projects = run({"projects"});
    EXPECT_EQ(projects.exitCode, 0) << projects.err.toStdString();
    EXPECT_TRUE(projects.out.contains(base)) << projects.out.toStdString();
    EXPECT_FALSE(projects.out.contains("changed.example")) << projects.out.toStdString();
    readAll("after a registry save cut short");
}
