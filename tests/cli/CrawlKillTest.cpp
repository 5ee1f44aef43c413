// A crawl killed outright (SIGKILL): the counters saved as it went match the pages it had
// done, and a continued crawl counts as an uninterrupted one.

#include "support/CliProcess.h"
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <thread>

namespace {

std::string page(const std::string& title, const std::string& body)
{
    return "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>";
}

int requestsFor(const LocalHttpServer& server, const std::string& path)
{
    int n = 0;
    for (const auto& r : server.requests())
        if (r.path == path)
            ++n;
    return n;
}

// Home links p1..p5; p4 hangs until released, and the crawl is killed while it hangs. Each
// page takes pageMs while `slow` holds. With requests in flight beside the one in hand
// (parallel > 1), p4 is asked for with p1..p3, and the kill waits until they are committed:
// a hanging page must not hold back the commit of those done before it.
void killWhileP4HangsThenContinue(int pageMs, int parallel = 1)
{
    std::atomic<bool> slow{true};
    std::atomic<bool> released{false};
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    std::string links;
    for (int i = 1; i <= 5; ++i)
        links += "<a href=\"/p" + std::to_string(i) + ".html\">P" + std::to_string(i) + "</a>";
    auto answer = [&slow, &released, pageMs](const std::string& title, const std::string& body, bool hangs) {
        return [&slow, &released, pageMs, title, body, hangs](const HttpRequest&, HttpResponse& response) {
            if (slow)
                std::this_thread::sleep_for(std::chrono::milliseconds(pageMs));
            for (int i = 0; hangs && slow && !released && i < 3000; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
            response.setContent(page(title, body), "text/html");
        };
    };
    server.route("/", answer("Home", links, false));
    for (int i = 1; i <= 5; ++i)
        server.route("/p" + std::to_string(i) + ".html", answer("P" + std::to_string(i), "<a href=\"/\">home</a>", i == 4));
    const QString base = QString::fromStdString(server.baseUrl());

    QTemporaryDir dir;
    ASSERT_EQ(runCli({"new", "killed", base}, dir.path()).exitCode, 0);
    ASSERT_EQ(runCli({"new", "whole", base}, dir.path()).exitCode, 0);

    {
        CliProcess crawl({"crawl", "killed", "--parallel", QString::number(parallel)}, dir.path());
        ASSERT_TRUE(crawl.started());
        for (int i = 0; i < 2000 && requestsFor(server, "/p4.html") == 0; ++i)
            QThread::msleep(10);
        ASSERT_EQ(requestsFor(server, "/p4.html"), 1);
        QThread::msleep(200);
        for (int i = 0; parallel > 1 && i < 100; ++i) {
            if (runCli({"show", "killed"}, dir.path()).out.contains("Queue:          4 done"))
                break;
            QThread::msleep(50);
        }
        crawl.signal(SIGKILL);
        ASSERT_TRUE(crawl.wait(10000));
        EXPECT_EQ(crawl.termSignal(), SIGKILL);
    }
    released = true;

    // Home, p1, p2 and p3 were done; p4 was in flight.
    const CliResult show = runCli({"show", "killed"}, dir.path());
    EXPECT_TRUE(show.out.contains("Queue:          4 done, 2 waiting")) << show.out.toStdString();
    EXPECT_TRUE(show.out.contains("Pages crawled:  4")) << show.out.toStdString();

    slow = false;
    const CliResult resumed = runCli({"crawl", "killed", "--continue", "--parallel", QString::number(parallel)}, dir.path());
    EXPECT_EQ(resumed.exitCode, 0) << resumed.err.toStdString();
    const CliResult whole = runCli({"crawl", "whole"}, dir.path());
    EXPECT_EQ(whole.exitCode, 0) << whole.err.toStdString();
    EXPECT_TRUE(whole.out.contains("Pages analysed: 6 (this run: 6)")) << whole.out.toStdString();
    EXPECT_TRUE(resumed.out.contains("Pages analysed: 6 (this run: 2)")) << resumed.out.toStdString();
    EXPECT_TRUE(resumed.out.contains(" done, 0 waiting")) << resumed.out.toStdString();
}

TEST(CrawlKill, AfterAKillTheSavedCountMatchesThePagesDoneAndContinueCountsAsAWholeCrawl)
{
    // Pages of a little over a second: each page start finds a second gone since the
    // registry's last save.
    killWhileP4HangsThenContinue(1100);
}

TEST(CrawlKill, FastPagesToo)
{
    // The registry, saved once a second, lags behind; the count committed with each page
    // does not.
    killWhileP4HangsThenContinue(1);
}

} // namespace

TEST(CrawlKill, PagesFetchedAheadAreCommittedWhileAPageHangs)
{
    killWhileP4HangsThenContinue(300, 4);
}
