// Servers that redirect with hostile intent: an endless chain of distinct targets, and
// targets of other schemes than the web's. The crawl ends, and only http and https are ever
// fetched or queued.

#include "support/CliProcess.h"
#include "support/CliRunner.h"
#include "support/CrawlDatabaseSnapshot.h"
#include "support/LocalHttpServer.h"
#include "support/RawTcpServer.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>

namespace {

std::string requestPath(const std::string& head)
{
    const size_t start = head.find(' ') + 1;
    return head.substr(start, head.find(' ', start) - start);
}

class HostileRedirect : public ::testing::Test {
protected:
    void crawl(const std::string& url, int limitMs)
    {
        ASSERT_EQ(runCli({"new", "site", QString::fromStdString(url)}, dir.path()).exitCode, 0);
        CliProcess process({"crawl", "site", "--timeout", "5"}, dir.path());
        ASSERT_TRUE(process.started());
        ASSERT_TRUE(process.wait(limitMs)) << "the crawl was still running after " << limitMs << " ms";
        EXPECT_EQ(process.exitCode(), 0) << process.err().toStdString();
        out = process.out();
    }
    QString errorsLog() const
    {
        QFile file(dir.path() + "/site_errors.log");
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }
    QJsonObject brokenEntry(const QString& url) const
    {
        const CliResult r = runCli({"broken", "site", "--format", "json"}, dir.path());
        for (const auto& entry : QJsonDocument::fromJson(r.out.toUtf8()).array())
            if (entry.toObject().value("url").toString() == url)
                return entry.toObject();
        return {};
    }

    QTemporaryDir dir;
    QString out;
};

TEST_F(HostileRedirect, AnEndlessChainOfDistinctTargetsEnds)
{
    // "/" and every "/r/N" redirect to "/r/N+1", for ever.
    std::atomic<long> requests{0};
    RawTcpServer server([&requests](RawTcpServer::Connection& c) {
        const std::string path = requestPath(c.readRequestHead());
        ++requests;
        long n = 0;
        if (path.rfind("/r/", 0) == 0)
            n = std::stol(path.substr(3));
        c.write("HTTP/1.1 302 Found\r\nLocation: /r/" + std::to_string(n + 1)
                + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        c.close();
    });
    ASSERT_TRUE(server.start());
    crawl(server.baseUrl() + "/", 60000);
    // Each fetch follows at most 20 redirects, and a chain started from one entry queues at
    // most 20 targets: 21 fetches of 21 requests, and robots.txt.
    EXPECT_LE(requests.load(), 21 * 21 + 1);
    EXPECT_TRUE(errorsLog().contains("more than 20 redirects from " + QString::fromStdString(server.baseUrl())))
        << errorsLog().toStdString();
    const CrawlDatabaseSnapshot db = CrawlDatabaseSnapshot::read(dir.path() + "/site.sqlite");
    ASSERT_TRUE(db.readable);
    EXPECT_EQ(db.waiting, 0);
    EXPECT_EQ(db.done, 21);
}

TEST_F(HostileRedirect, ARedirectChainIsCountedAcrossAContinuedCrawl)
{
    // The start page links to the same endless chain; the server holds its answer once
    // five of the chain's fetches are done, the crawl is stopped there and continued later.
    std::atomic<long> requests{0};
    std::atomic<bool> hold{true};
    RawTcpServer server([&](RawTcpServer::Connection& c) {
        const std::string path = requestPath(c.readRequestHead());
        if (path.rfind("/r/", 0) != 0) {
            const std::string body = "<html><head><title>Home</title></head><body><a href=\"/r/0\">r</a></body></html>";
            c.write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: " + std::to_string(body.size())
                    + "\r\nConnection: close\r\n\r\n" + body);
            c.close();
            return;
        }
        if (++requests > 5 * 21) {
            while (hold && !c.stopping())
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        const long n = std::stol(path.substr(3));
        c.write("HTTP/1.1 302 Found\r\nLocation: /r/" + std::to_string(n + 1)
                + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        c.close();
    });
    ASSERT_TRUE(server.start());
    ASSERT_EQ(runCli({"new", "site", QString::fromStdString(server.baseUrl() + "/")}, dir.path()).exitCode, 0);
    {
        CliProcess first({"crawl", "site", "--timeout", "30", "--parallel", "1"}, dir.path());
        ASSERT_TRUE(first.started());
        for (int i = 0; i < 1500 && requests <= 5 * 21; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        ASSERT_GT(requests.load(), 5 * 21);
        first.signal(SIGINT);
        ASSERT_TRUE(first.wait(20000));
        EXPECT_EQ(first.exitCode(), 130) << first.err().toStdString();
    }
    hold = false;
    const CliResult again = runCli({"crawl", "site", "--continue", "--timeout", "5", "--parallel", "1"}, dir.path(),
                                   60000);
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    // However the chain was split between the runs, it queued at most 20 targets in all:
    // 21 fetches of 21 requests, and the one given up at the stop asked again.
    EXPECT_LE(requests.load(), 22 * 21);
    EXPECT_TRUE(errorsLog().contains("more than 20 redirects from " + QString::fromStdString(server.baseUrl() + "/r/0")))
        << errorsLog().toStdString();
    const CrawlDatabaseSnapshot db = CrawlDatabaseSnapshot::read(dir.path() + "/site.sqlite");
    EXPECT_EQ(db.waiting, 0);
}

TEST_F(HostileRedirect, RedirectsToOtherSchemesAreNeitherFetchedNorQueued)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    server.setPage("/", "<html><head><title>Home</title></head><body><a href=\"/file.html\">f</a>"
                        "<a href=\"/smb.html\">s</a><a href=\"/js.html\">j</a><a href=\"/hop.html\">h</a>"
                        "<a href=\"/ok.html\">o</a></body></html>");
    server.setRedirect("/file.html", "file:///etc/passwd", 302);
    server.setRedirect("/smb.html", "smb://fileserver/share/x.html", 301);
    server.setRedirect("/js.html", "javascript:alert(1)", 302);
    server.setRedirect("/hop.html", "/hop2.html", 302);
    server.setRedirect("/hop2.html", "file:///etc/hosts", 302);
    server.setRedirect("/ok.html", "/new.html", 301);
    server.setPage("/new.html", "<html><head><title>New</title></head><body></body></html>");
    crawl(server.baseUrl() + "/", 30000);

    const CrawlDatabaseSnapshot db = CrawlDatabaseSnapshot::read(dir.path() + "/site.sqlite");
    ASSERT_TRUE(db.readable);
    for (const QString& page : db.pages)
        EXPECT_TRUE(page.startsWith("http://")) << page.toStdString();
    EXPECT_EQ(db.waiting, 0);
    // An ordinary redirect still queues its target as a page of its own.
    EXPECT_TRUE(db.pages.filter(QString::fromStdString(server.url("/new.html")) + " | New |").size() == 1)
        << db.pages.join("\n").toStdString();

    for (const char* path : {"/file.html", "/smb.html", "/js.html"}) {
        const QJsonObject entry = brokenEntry(QString::fromStdString(server.url(path)));
        EXPECT_EQ(entry.value("error").toString(), "bad-url") << path;
    }
    const QString log = errorsLog();
    EXPECT_TRUE(log.contains("SKIP::BadURL " + QString::fromStdString(server.url("/file.html")))) << log.toStdString();
    EXPECT_TRUE(log.contains("SKIP::BadURL " + QString::fromStdString(server.url("/js.html")))) << log.toStdString();
    EXPECT_TRUE(log.contains("not http or https")) << log.toStdString();
}

} // namespace
