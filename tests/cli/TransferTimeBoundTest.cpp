// A server that trickles its answer, one byte a second, is never silent: the time-out of
// silence never fires, the bound on the whole transfer does.

#include "support/CliProcess.h"
#include "support/CliRunner.h"
#include "support/RawTcpServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>

namespace {

RawTcpServer::Handler trickle()
{
    return [](RawTcpServer::Connection& c) {
        c.readRequestHead();
        const std::string answer = "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 100000\r\n\r\n"
                                   "<html><head><title>Slow</title></head><body>"
                                   + std::string(100000, 'x');
        for (char byte : answer) {
            if (!c.write(std::string_view(&byte, 1)) || c.waitForStop(1000))
                return;
        }
    };
}

QString errorOf(const QString& dataDir, const QString& project, const QString& url)
{
    const CliResult r = runCli({"broken", project, "--format", "json"}, dataDir);
    for (const auto& p : QJsonDocument::fromJson(r.out.toUtf8()).array())
        if (p.toObject().value("url").toString() == url)
            return p.toObject().value("error").toString();
    return QStringLiteral("(no page)");
}

TEST(TransferTimeBound, ATrickleFailsAsATimeOut)
{
    RawTcpServer server(trickle());
    ASSERT_TRUE(server.start());
    QTemporaryDir dir;
    const QString url = QString::fromStdString(server.baseUrl());
    ASSERT_EQ(runCli({"new", "slow", url + "/"}, dir.path()).exitCode, 0);
    CliProcess crawl({"crawl", "slow", "--timeout", "5", "--max-transfer-time", "2"}, dir.path());
    ASSERT_TRUE(crawl.started());
    ASSERT_TRUE(crawl.wait(20000)) << "the trickle held the crawl";
    EXPECT_EQ(crawl.exitCode(), 0) << crawl.err().toStdString();
    EXPECT_LT(crawl.elapsedMs(), 8000);
    EXPECT_TRUE(crawl.out().contains("Queue:          1 done, 0 waiting")) << crawl.out().toStdString();
    EXPECT_EQ(errorOf(dir.path(), "slow", url), "timeout");
}

TEST(TransferTimeBound, CrawlUrlTakesTheBoundToo)
{
    RawTcpServer server(trickle());
    ASSERT_TRUE(server.start());
    QTemporaryDir dir;
    const QString url = QString::fromStdString(server.baseUrl()) + "/";
    CliProcess crawl({"crawl-url", url, "--name", "slow", "--max-transfer-time", "2"}, dir.path());
    ASSERT_TRUE(crawl.started());
    ASSERT_TRUE(crawl.wait(20000)) << "the trickle held the crawl";
    EXPECT_EQ(crawl.exitCode(), 0) << crawl.err().toStdString();
    EXPECT_LT(crawl.elapsedMs(), 8000);
    EXPECT_EQ(errorOf(dir.path(), "slow", url), "timeout");
}

TEST(TransferTimeBound, HelpNamesTheDefault)
{
    for (const char* command : {"crawl", "crawl-url"}) {
        const CliResult r = runCli({command, "--help"});
        EXPECT_TRUE(r.out.contains("--max-transfer-time S")) << r.out.toStdString();
        EXPECT_TRUE(r.out.contains("(default 300)")) << r.out.toStdString();
    }
}

} // namespace
