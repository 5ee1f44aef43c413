// A crawl killed outright (SIGKILL) at many moments: before its first request, inside a
// page, while a page's records are written, and after the last page (the end steps and the
// vacuum). After every kill the database passes `check`; continued to the end, it holds the
// pages and links of a crawl that was never interrupted.
#include "SlowTestSite.h"
#include "support/CliRunner.h"
#include "support/CrawlDatabaseSnapshot.h"
#include "support/LocalHttpServer.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <thread>

#include <unistd.h>

namespace {

// When to kill one run: `delayMs` after its start (afterRequests 0), after it has sent
// `afterRequests` requests, or after it requested `afterPath`.
struct KillMoment {
    int afterRequests;
    int delayMs;
    std::string afterPath = std::string();
};

// Kills while pages are fetched and recorded: during the page left in flight by the kill
// before (one request), during the page after it or the one after that (two or three
// requests), at delays that fall in the transfer, the analysis, the records or the commit;
// and some during start-up (a restart's emptying of the database, robots.txt).
KillMoment killInsideTheCrawl(int n)
{
    if (n % 6 == 5)
        return {0, 5 + 12 * (n % 7)};
    const int requests[] = {2, 1, 2, 3, 2, 2, 1, 2, 3};
    const int delays[] = {0, 3, 6, 8, 10, 12, 15, 19, 24, 30, 40};
    return {requests[n % 9], delays[n % 11]};
}

// "" when both lists are the same; otherwise what each holds that the other does not.
std::string difference(const QStringList& found, const QStringList& expected)
{
    std::string text;
    for (const QString& line : found)
        if (found.count(line) > expected.count(line))
            text += "+ " + line.toStdString() + "\n";
    for (const QString& line : expected)
        if (expected.count(line) > found.count(line))
            text += "- " + line.toStdString() + "\n";
    return text;
}

class CrashConsistency : public ::testing::Test {
protected:
    void SetUp() override
    {
        SlowTestSite::serve(server, 8);
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
    }

    QString database(const QString& name) const { return dir.path() + "/" + name + ".sqlite"; }

    bool requested(const std::string& path, size_t since) const
    {
        const auto all = server.requests();
        for (size_t i = since; i < all.size(); ++i)
            if (all[i].path == path)
                return true;
        return false;
    }

    // Runs `quillmere crawl ...` and kills it at `moment`. Answers true when it was killed,
    // false when it ended first (its exit status in *status).
    bool runAndKill(const QStringList& crawlArgs, const KillMoment& moment, int* status)
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QUILLMERE_TRACE", "0");
        process.setProcessEnvironment(env);
        const size_t since = server.requestCount();
        process.start(QStringLiteral(QUILLMERE_CLI_PATH), QStringList{"--data-dir", dir.path()} + crawlArgs + crawlOptions);
        if (!process.waitForStarted(10000))
            return false;
        const auto started = std::chrono::steady_clock::now();
        auto reached = [&] {
            if (!moment.afterPath.empty())
                return requested(moment.afterPath, since);
            if (moment.afterRequests == 0)
                return true;
            return server.requestCount() - since >= size_t(moment.afterRequests);
        };
        while (!reached()) {
            if (process.waitForFinished(1)) {
                *status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
                return false;
            }
            if (std::chrono::steady_clock::now() - started > std::chrono::seconds(60))
                break;
        }
        const auto trigger = moment.afterRequests == 0 && moment.afterPath.empty() ? started : std::chrono::steady_clock::now();
        std::this_thread::sleep_until(trigger + std::chrono::milliseconds(moment.delayMs));
        if (process.state() == QProcess::NotRunning || process.waitForFinished(0)) {
            *status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
            return false;
        }
        ::kill(pid_t(process.processId()), SIGKILL);
        process.waitForFinished(10000);
        return true;
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
    // The kills fall between given requests: one request at a time, each page committed
    // before the next one is waited for. Pages fetched ahead and grouped commits have a test
    // of their own.
    QStringList crawlOptions{"--parallel", "1"};
};

TEST_F(CrashConsistency, KilledCrawlsStaySoundAndContinueToTheSamePagesAndLinks)
{
    // The reference: one crawl, never interrupted.
    ASSERT_EQ(runCli({"new", "reference", base}, dir.path()).exitCode, 0);
    CliResult r = runCli({"crawl", "reference"}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const CrawlDatabaseSnapshot reference = CrawlDatabaseSnapshot::read(database("reference"));
    ASSERT_TRUE(reference.readable);
    ASSERT_GE(reference.pages.size(), 40) << reference.pages.join('\n').toStdString();
    r = runCli({"check", "reference"}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.out.toStdString();
    const std::string lastPath = server.requests().back().path;
    // A restart keeps the answers' headers: links to the pictures, known not to be pages,
    // are no longer recorded. Restarted crawls are compared with a restarted crawl.
    r = runCli({"crawl", "reference", "--restart"}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const CrawlDatabaseSnapshot restarted = CrawlDatabaseSnapshot::read(database("reference"));
    ASSERT_TRUE(restarted.readable);

    int kills = 0;
    int killsAfterTheLastPage = 0;
    // The end of a crawl, swept: from the same files each time, the last pages, the end
    // steps and the vacuum, killed 1 ms later after the last request each time.
    ASSERT_EQ(runCli({"new", "swept", base}, dir.path()).exitCode, 0);
    int sweptStatus = -1;
    ASSERT_TRUE(runAndKill({"crawl", "swept"}, KillMoment{0, 0, SlowTestSite::pagePath(20)}, &sweptStatus));
    // A database in write-ahead-log mode is its file and its log together: both are saved
    // and put back, and no log of another round is left beside them.
    QStringList files;
    for (const QString& main : {database("swept"), dir.path() + "/Quillmere.storedata"})
        for (const char* suffix : {"", "-wal", "-shm", "-journal"})
            files << main + suffix;
    for (const QString& file : files)
        if (QFile::exists(file))
            ASSERT_TRUE(QFile::copy(file, file + ".saved"));
    for (int delay = 0; delay <= 30; ++delay) {
        for (const QString& file : files) {
            QFile::remove(file);
            if (QFile::exists(file + ".saved"))
                ASSERT_TRUE(QFile::copy(file + ".saved", file));
        }
        if (!runAndKill({"crawl", "swept", "--continue"}, KillMoment{0, delay, lastPath}, &sweptStatus)) {
            ASSERT_EQ(sweptStatus, 0);
            continue;  // it ended before the kill
        }
        ++kills;
        r = runCli({"check", "swept"}, dir.path());
        EXPECT_EQ(r.exitCode, 0) << "killed " << delay << " ms after its last request:\n" << r.out.toStdString()
                                 << r.err.toStdString();
        const CrawlDatabaseSnapshot now = CrawlDatabaseSnapshot::read(database("swept"));
        if (now.done > 0 && now.waiting == 0)
            ++killsAfterTheLastPage;
    }
    r = runCli({"crawl", "swept", "--continue"}, dir.path());
    if (r.exitCode == 0) {
        const CrawlDatabaseSnapshot result = CrawlDatabaseSnapshot::read(database("swept"));
        EXPECT_EQ(difference(result.pages, reference.pages), "");
        EXPECT_EQ(difference(result.links, reference.links), "");
    }

    ASSERT_EQ(runCli({"new", "site", base}, dir.path()).exitCode, 0);
    // A crawl of another project from scratch, killed again and again while its pages are
    // fetched, then after its last request. Restarts killed as they begin have a test of
    // their own.
    for (int round = 0; round < 1; ++round) {
        const QStringList firstRun = round == 0 ? QStringList{"crawl", "site"} : QStringList{"crawl", "site", "--restart"};
        bool first = true;
        int endDelay = 4 + 4 * round;
        for (int run = 0;; ++run) {
            ASSERT_LT(run, 300) << "the crawl does not get to its end";
            const QStringList args = first ? firstRun : QStringList{"crawl", "site", "--continue"};
            const CrawlDatabaseSnapshot before = CrawlDatabaseSnapshot::read(database("site"));
            // The last sixteen entries hold the pictures and the redirects, answered at once: a
            // run that gets there goes to the end.
            const bool nearTheEnd = !first && before.done > 0 && before.waiting <= 16;
            // Near the end, each run is killed after its last request, a little later each time
            // until a kill falls after the last page.
            const KillMoment moment = nearTheEnd ? KillMoment{0, endDelay, lastPath} : killInsideTheCrawl(kills);
            if (nearTheEnd)
                endDelay += 3;
            int status = -1;
            const bool killed = runAndKill(args, moment, &status);
            if (!killed) {
                ASSERT_EQ(status, 0) << args.join(' ').toStdString();
                break;
            }
            ++kills;
            first = false;
            r = runCli({"check", "site"}, dir.path());
            EXPECT_EQ(r.exitCode, 0) << "after kill " << kills << " (" << moment.afterRequests << " requests, "
                                     << moment.delayMs << " ms" << (nearTheEnd ? " after the last" : "") << "):\n"
                                     << r.out.toStdString() << r.err.toStdString();
            const CrawlDatabaseSnapshot now = CrawlDatabaseSnapshot::read(database("site"));
            ASSERT_TRUE(now.readable);
            if (now.done > 0 && now.waiting == 0) {
                // Killed after its last page: during the end steps or the vacuum. Nothing is
                // left to continue.
                ++killsAfterTheLastPage;
                r = runCli({"crawl", "site", "--continue"}, dir.path());
                EXPECT_EQ(r.exitCode, 2);
                EXPECT_TRUE(r.err.contains("nothing waits")) << r.err.toStdString();
                break;
            }
        }
        const CrawlDatabaseSnapshot result = CrawlDatabaseSnapshot::read(database("site"));
        const CrawlDatabaseSnapshot& expected = round == 0 ? reference : restarted;
        EXPECT_EQ(difference(result.pages, expected.pages), "") << "round " << round;
        EXPECT_EQ(difference(result.links, expected.links), "") << "round " << round;
        EXPECT_EQ(result.waiting, 0);
        r = runCli({"check", "site"}, dir.path());
        EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
    }
    EXPECT_GE(kills, 20);
    EXPECT_GE(killsAfterTheLastPage, 3);
}

TEST_F(CrashConsistency, RestartsKilledAsTheyBeginLeaveASoundDatabase)
{
    // A restart empties the crawl database and sets the counters back before its first
    // request. Each run is killed a little later after its first write to the database
    // began (its log got its first bytes): in the emptying, or just after it.
    ASSERT_EQ(runCli({"new", "site", base}, dir.path()).exitCode, 0);
    ASSERT_EQ(runCli({"crawl", "site"}, dir.path()).exitCode, 0);
    ASSERT_EQ(runCli({"crawl", "site", "--restart"}, dir.path()).exitCode, 0);
    const CrawlDatabaseSnapshot restarted = CrawlDatabaseSnapshot::read(database("site"));
    // The write-ahead log gets its first bytes with the first write.
    const QByteArray journal = QFile::encodeName(database("site") + "-wal");
    auto writing = [&journal] {
        struct stat info {};
        return ::stat(journal.constData(), &info) == 0 && info.st_size > 0;
    };
    for (int micros = 0; micros <= 12000; micros += 400) {
        ASSERT_EQ(runCli({"crawl", "site", "--restart"}, dir.path()).exitCode, 0);  // pages to empty again
        QProcess process;
        process.start(QStringLiteral(QUILLMERE_CLI_PATH), {"--data-dir", dir.path(), "crawl", "site", "--restart"});
        ASSERT_TRUE(process.waitForStarted());
        const auto started = std::chrono::steady_clock::now();
        while (!writing() && process.state() == QProcess::Running
               && std::chrono::steady_clock::now() - started < std::chrono::seconds(20))
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        std::this_thread::sleep_for(std::chrono::microseconds(micros));
        ::kill(pid_t(process.processId()), SIGKILL);
        process.waitForFinished(10000);
        const CliResult r = runCli({"check", "site"}, dir.path());
        EXPECT_EQ(r.exitCode, 0) << "killed " << micros << " µs after its first write began:\n" << r.out.toStdString()
                                 << r.err.toStdString();
    }
    const CliResult r = runCli({"crawl", "site", "--restart"}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const CrawlDatabaseSnapshot result = CrawlDatabaseSnapshot::read(database("site"));
    EXPECT_EQ(difference(result.pages, restarted.pages), "");
    EXPECT_EQ(difference(result.links, restarted.links), "");
}

} // namespace

TEST_F(CrashConsistency, CrawlsFetchingAheadKilledAtAnyMomentStaySoundAndContinueToTheSamePages)
{
    crawlOptions.clear();  // the default: pages fetched ahead, commits grouped
    SlowTestSite::serve(server, 40);  // slower pages: a whole crawl outlasts several kills
    ASSERT_EQ(runCli({"new", "reference", base}, dir.path()).exitCode, 0);
    ASSERT_EQ(runCli({"crawl", "reference"}, dir.path()).exitCode, 0);
    const CrawlDatabaseSnapshot reference = CrawlDatabaseSnapshot::read(database("reference"));
    ASSERT_TRUE(reference.readable);

    // Each run is killed a tenth to a third of a second after it started: inside a group of
    // pages, in a commit, or between two.
    ASSERT_EQ(runCli({"new", "site", base}, dir.path()).exitCode, 0);
    int kills = 0;
    for (int run = 0;; ++run) {
        ASSERT_LT(run, 200) << "the crawl does not get to its end";
        const QStringList args = run == 0 ? QStringList{"crawl", "site"} : QStringList{"crawl", "site", "--continue"};
        int status = -1;
        if (!runAndKill(args, KillMoment{0, 100 + 37 * (run % 7)}, &status)) {
            ASSERT_EQ(status, 0) << args.join(' ').toStdString();
            break;
        }
        ++kills;
        const CliResult r = runCli({"check", "site"}, dir.path());
        EXPECT_EQ(r.exitCode, 0) << "after kill " << kills << ":\n" << r.out.toStdString() << r.err.toStdString();
        const CrawlDatabaseSnapshot now = CrawlDatabaseSnapshot::read(database("site"));
        ASSERT_TRUE(now.readable);
        if (now.done > 0 && now.waiting == 0)
            break;  // killed in the end steps: nothing is left to continue
    }
    const CrawlDatabaseSnapshot result = CrawlDatabaseSnapshot::read(database("site"));
    EXPECT_EQ(difference(result.pages, reference.pages), "");
    EXPECT_EQ(difference(result.links, reference.links), "");
    EXPECT_EQ(result.waiting, 0);
    EXPECT_GE(kills, 3);
}
