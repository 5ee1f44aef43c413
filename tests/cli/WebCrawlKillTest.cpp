// A web-rules crawl killed outright (SIGKILL) in the middle: the database stays sound, and a
// continued crawl ends with the pages, counts and reports of one uninterrupted crawl.

#include "support/CliProcess.h"
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QStringList>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <string>
#include <thread>

namespace {

int requestsFor(const LocalHttpServer& server, const std::string& path)
{
    int n = 0;
    for (const auto& r : server.requests())
        if (r.path == path)
            ++n;
    return n;
}

// Sorted lines: the order of rows follows the order of the crawl, which requests in flight
// change from run to run.
QStringList sortedLines(const QString& text)
{
    QStringList lines = text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    lines.sort();
    return lines;
}

TEST(WebCrawlKill, AKilledCrawlContinuedEndsAsOneWholeCrawl)
{
    std::atomic<bool> hang{true};
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    // Thirty pages, each naming the next three (the next one first by <link rel=next>), a
    // missing page, an image, and a fragment; p20 hangs while the crawl is killed.
    const int pages = 30;
    for (int i = 0; i < pages; ++i) {
        std::string head = "<link rel='next' href='/p" + std::to_string((i + 1) % pages) + ".html'>";
        std::string body = "<h1 id='top" + std::to_string(i) + "'>P</h1><img src='/logo.png' alt='logo'>";
        for (int k = 1; k <= 3; ++k)
            body += "<a href='/p" + std::to_string((i + k) % pages) + ".html#top" + std::to_string((i + k) % pages)
                    + "'>next " + std::to_string(k) + "</a>";
        if (i % 7 == 0)
            body += "<a href='/missing" + std::to_string(i) + ".html'>gone</a><a href='/p1.html#nowhere'>p1</a>";
        const std::string html = "<html><head><title>P" + std::to_string(i) + "</title>" + head + "</head><body>" + body
                                 + "</body></html>";
        const std::string path = i == 0 ? "/" : "/p" + std::to_string(i) + ".html";
        const bool hangs = i == 20;
        server.route(path, [html, hangs, &hang](const HttpRequest&, HttpResponse& response) {
            for (int n = 0; hangs && hang && n < 3000; ++n)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            response.setContent(html, "text/html; charset=utf-8");
        });
        if (i == 0)
            server.setPage("/p0.html", html);
    }
    server.setPage("/logo.png", "PNG", "image/png");
    const QString base = QString::fromStdString(server.baseUrl());

    QTemporaryDir dir;
    ASSERT_EQ(runCli({"new", "killed", base, "--rules", "web"}, dir.path()).exitCode, 0);
    ASSERT_EQ(runCli({"new", "whole", base, "--rules", "web"}, dir.path()).exitCode, 0);
    {
        CliProcess crawl({"crawl", "killed"}, dir.path());
        ASSERT_TRUE(crawl.started());
        for (int i = 0; i < 2000 && requestsFor(server, "/p20.html") == 0; ++i)
            QThread::msleep(10);
        ASSERT_EQ(requestsFor(server, "/p20.html"), 1);
        QThread::msleep(400);  // what was answered meanwhile is committed
        crawl.signal(SIGKILL);
        ASSERT_TRUE(crawl.wait(10000));
        EXPECT_EQ(crawl.termSignal(), SIGKILL);
    }
    hang = false;
    const CliResult soundAfterKill = runCli({"check", "killed"}, dir.path());
    EXPECT_EQ(soundAfterKill.exitCode, 0) << soundAfterKill.out.toStdString();
    // Work is left, pages still queued or links still to check: the crawl may go on.

    const CliResult resumed = runCli({"crawl", "killed", "--continue"}, dir.path());
    EXPECT_EQ(resumed.exitCode, 0) << resumed.err.toStdString();
    const CliResult whole = runCli({"crawl", "whole"}, dir.path());
    EXPECT_EQ(whole.exitCode, 0) << whole.err.toStdString();
    EXPECT_EQ(runCli({"check", "killed"}, dir.path()).exitCode, 0);

    for (const QStringList& report : {QStringList{"pages", "--format", "csv", "--columns", "url,title,inLinkCount,outLinkCount"},
                                      QStringList{"broken", "--format", "csv"}, QStringList{"fragments", "--format", "csv"}}) {
        QStringList killedArgs{report.first(), QStringLiteral("killed")};
        QStringList wholeArgs{report.first(), QStringLiteral("whole")};
        killedArgs << report.mid(1);
        wholeArgs << report.mid(1);
        const CliResult a = runCli(killedArgs, dir.path());
        const CliResult b = runCli(wholeArgs, dir.path());
        ASSERT_EQ(a.exitCode, 0) << a.err.toStdString();
        EXPECT_EQ(sortedLines(a.out), sortedLines(b.out)) << report.first().toStdString();
        EXPECT_GT(sortedLines(a.out).size(), 1) << report.first().toStdString();
    }
}

} // namespace
