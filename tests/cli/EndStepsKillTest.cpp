// A crawl killed outright (SIGKILL) at many moments of its end steps: after each kill, the
// next command that opens the project puts the registry's page count and depth right, a
// continued crawl goes on or says that nothing waits, and the database passes `check`.
#include "SlowTestSite.h"
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include <unistd.h>

namespace {

QString field(const QString& text, const char* label)
{
    const QRegularExpression line(QStringLiteral("%1\\s*(\\d+)").arg(QLatin1String(label)));
    return line.match(text).captured(1);
}

class EndStepsKill : public ::testing::Test {
protected:
    void SetUp() override
    {
        SlowTestSite::serve(server, 4);
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
    }

    bool requested(const std::string& path, size_t since) const
    {
        const auto all = server.requests();
        for (size_t i = since; i < all.size(); ++i)
            if (all[i].path == path)
                return true;
        return false;
    }

    // Runs `quillmere crawl ...` and kills it `delayMs` after it asked for `path`. True when
    // it was killed, false when it ended first.
    bool runAndKill(const QStringList& crawlArgs, const std::string& path, int delayMs)
    {
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QUILLMERE_TRACE", "0");
        process.setProcessEnvironment(env);
        const size_t since = server.requestCount();
        process.start(QStringLiteral(QUILLMERE_CLI_PATH),
                      QStringList{"--data-dir", dir.path()} + crawlArgs + QStringList{"--parallel", "1"});
        if (!process.waitForStarted(10000))
            return false;
        const auto started = std::chrono::steady_clock::now();
        while (!requested(path, since)) {
            if (process.waitForFinished(1))
                return false;
            if (std::chrono::steady_clock::now() - started > std::chrono::seconds(60))
                break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(delayMs));
        if (process.state() == QProcess::NotRunning || process.waitForFinished(0))
            return false;
        ::kill(pid_t(process.processId()), SIGKILL);
        process.waitForFinished(10000);
        return true;
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
};

TEST_F(EndStepsKill, TheRegistryAgreesWithTheDatabaseAtTheNextOpen)
{
    ASSERT_EQ(runCli({"new", "reference", base}, dir.path()).exitCode, 0);
    CliResult r = runCli({"crawl", "reference", "--parallel", "1"}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const std::string lastPath = server.requests().back().path;
    const CliResult reference = runCli({"show", "reference"}, dir.path());
    const QString pages = field(reference.out, "Pages crawled:");
    const QString depth = field(reference.out, "Deepest depth:");
    ASSERT_FALSE(pages.isEmpty()) << reference.out.toStdString();
    ASSERT_FALSE(depth.isEmpty()) << reference.out.toStdString();

    // The files as they stand a few pages before the end, put back before each kill.
    ASSERT_EQ(runCli({"new", "site", base}, dir.path()).exitCode, 0);
    ASSERT_TRUE(runAndKill({"crawl", "site"}, SlowTestSite::pagePath(20), 0));
    QStringList files;
    for (const QString& main : {dir.path() + "/site.sqlite", dir.path() + "/Quillmere.storedata"})
        for (const char* suffix : {"", "-wal", "-shm", "-journal"})
            files << main + suffix;
    for (const QString& file : files)
        if (QFile::exists(file))
            ASSERT_TRUE(QFile::copy(file, file + ".saved"));

    int kills = 0;
    for (int delay = 0; delay <= 40; delay += 2) {
        for (const QString& file : files) {
            QFile::remove(file);
            if (QFile::exists(file + ".saved"))
                ASSERT_TRUE(QFile::copy(file + ".saved", file));
        }
        if (!runAndKill({"crawl", "site", "--continue"}, lastPath, delay))
            continue;  // it ended before the kill
        ++kills;
        const std::string when = "killed " + std::to_string(delay) + " ms after its last request";
        r = runCli({"crawl", "site", "--continue", "--parallel", "1"}, dir.path());
        if (r.exitCode == 2)
            EXPECT_TRUE(r.err.contains("nothing waits")) << when << "\n" << r.err.toStdString();
        else
            EXPECT_EQ(r.exitCode, 0) << when << "\n" << r.err.toStdString();
        const CliResult show = runCli({"show", "site"}, dir.path());
        EXPECT_EQ(field(show.out, "Pages crawled:").toStdString(), pages.toStdString()) << when << "\n" << show.out.toStdString();
        EXPECT_EQ(field(show.out, "Deepest depth:").toStdString(), depth.toStdString()) << when << "\n" << show.out.toStdString();
        const CliResult projects = runCli({"projects"}, dir.path());
        EXPECT_TRUE(QRegularExpression(QStringLiteral("\\nsite .*\\s%1\\s+%2\\n").arg(pages, depth)).match(projects.out).hasMatch())
            << when << "\n" << projects.out.toStdString();
        r = runCli({"check", "site"}, dir.path());
        EXPECT_EQ(r.exitCode, 0) << when << "\n" << r.out.toStdString();
    }
    EXPECT_GE(kills, 3);
}

} // namespace
