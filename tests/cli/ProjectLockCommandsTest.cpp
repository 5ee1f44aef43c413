// One project, two processes: while a crawl runs, the commands that change the project are
// refused and the readers keep working; a killed crawl leaves no lock behind.
#include "SlowTestSite.h"
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>
#include <map>

namespace {

class ProjectLockCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        SlowTestSite::serve(server, 80);  // about 3 s a crawl: time for the commands below
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
    }

    CliResult run(const QStringList& args) { return runCli(args, dir.path()); }

    void startCrawl(QProcess& process, const QStringList& args)
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QUILLMERE_TRACE", "0");
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(QUILLMERE_CLI_PATH), QStringList{"--data-dir", dir.path()} + args);
        ASSERT_TRUE(process.waitForStarted());
        const size_t before = server.requestCount();
        for (int i = 0; i < 1000 && server.requestCount() < before + 2; ++i)
            QThread::msleep(5);
        ASSERT_GE(server.requestCount(), before + 2);
    }

    QStringList projectFiles(const QString& name) const
    {
        return QDir(dir.path()).entryList({name + ".*", name + "_*"}, QDir::Files);
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
};

TEST_F(ProjectLockCommands, WritersAreRefusedWhileACrawlRunsAndReadersAreNot)
{
    ASSERT_EQ(run({"new", "site", base}).exitCode, 0);
    QProcess crawl;
    // One request at a time keeps the crawl running through every command below, however
    // fast the default number in flight makes it.
    startCrawl(crawl, {"crawl", "site", "--parallel", "1"});
    const QString pid = QString::number(crawl.processId());

    for (const QStringList& args : QList<QStringList>{{"crawl", "site", "--continue"},
                                                      {"crawl", "site", "--restart"},
                                                      {"crawl", "site"},
                                                      {"vacuum", "site"},
                                                      {"delete", "site"}}) {
        const CliResult r = run(args);
        EXPECT_EQ(r.exitCode, 6) << args.join(' ').toStdString() << "\n" << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("the project 'site' is in use by process " + pid + " (quillmere crawl)"))
            << r.err.toStdString();
    }
    EXPECT_EQ(crawl.state(), QProcess::Running);

    // Readers go on.
    CliResult r = run({"show", "site"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Project:        site"));
    r = run({"pages", "site", "--format", "csv"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.startsWith("url,title")) << r.out.toStdString();
    r = run({"links", "site", base + "/p1.html"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    r = run({"check", "site"});
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("in use by process " + pid)) << r.out.toStdString();
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/site.lock"));

    ASSERT_TRUE(crawl.waitForFinished(60000));
    EXPECT_EQ(crawl.exitCode(), 0) << crawl.readAllStandardError().toStdString();
    // No page was fetched twice (but for the targets of redirects, fetched with them), and
    // the lock went with the crawl.
    std::map<std::string, int> fetches;
    for (const auto& request : server.requests())
        ++fetches[request.path];
    for (const auto& [path, count] : fetches)
        EXPECT_EQ(count, path == "/p3.html" || path == "/dir/" ? 2 : 1) << path;
    EXPECT_FALSE(QFileInfo::exists(dir.path() + "/site.lock"));
    r = run({"check", "site"});
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();

    r = run({"vacuum", "site"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    r = run({"delete", "site"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(projectFiles("site"), QStringList()) << projectFiles("site").join(' ').toStdString();
}

TEST_F(ProjectLockCommands, AKilledCrawlLeavesNoLockInTheWay)
{
    ASSERT_EQ(run({"new", "site", base}).exitCode, 0);
    QProcess crawl;
    startCrawl(crawl, {"crawl", "site"});
    ::kill(pid_t(crawl.processId()), SIGKILL);
    ASSERT_TRUE(crawl.waitForFinished(10000));
    EXPECT_TRUE(QFileInfo::exists(dir.path() + "/site.lock"));  // its file stays, its lock does not

    CliResult r = run({"crawl", "site", "--continue"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("0 waiting")) << r.out.toStdString();
    EXPECT_FALSE(QFileInfo::exists(dir.path() + "/site.lock"));

    // A stale lock file does not stop a delete either, and goes with the project.
    startCrawl(crawl, {"crawl", "site", "--restart"});
    ::kill(pid_t(crawl.processId()), SIGKILL);
    ASSERT_TRUE(crawl.waitForFinished(10000));
    r = run({"delete", "site"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_EQ(projectFiles("site"), QStringList()) << projectFiles("site").join(' ').toStdString();
}

} // namespace
