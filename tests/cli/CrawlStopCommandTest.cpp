// Ctrl-C and SIGTERM while a server hangs in the middle of a page, and the transfer
// time-out of `crawl --timeout`.

#include "support/CliProcess.h"
#include "support/CliRunner.h"
#include "support/StallingSite.h"

#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <csignal>
#include <iostream>

namespace {

class CrawlStopCommand : public ::testing::TestWithParam<int> {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.start());
        site.page("/", "Home", "<a href=\"/a.html\">A</a><a href=\"/stall.html\">S</a>");
        site.page("/a.html", "A", "");
        site.page("/stall.html", "Stall", "");
        ASSERT_EQ(run({"new", "hang", QString::fromStdString(site.base())}).exitCode, 0);
    }
    CliResult run(const QStringList& args) { return runCli(args, dir.path()); }

    QTemporaryDir dir;
    StallingSite site{StallingSite::Stall::AfterHeaders};
};

TEST_P(CrawlStopCommand, AStopDuringAHangingTransferEndsTheCrawlWithinASecond)
{
    CliProcess crawl({"crawl", "hang"}, dir.path());
    ASSERT_TRUE(crawl.started());
    for (int i = 0; i < 1000 && site.hits("/stall.html") == 0; ++i)
        QThread::msleep(10);
    ASSERT_EQ(site.hits("/stall.html"), 1);
    QThread::msleep(300);  // headers in, the transfer waits for the rest

    const auto sent = std::chrono::steady_clock::now();
    crawl.signal(GetParam());
    ASSERT_TRUE(crawl.wait(20000)) << "still running 20 s after the signal";
    const auto stopMs =
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - sent).count();
    std::cout << "stop (signal " << GetParam() << ") took " << stopMs << " ms\n";
    EXPECT_LT(stopMs, 1000);
    EXPECT_EQ(crawl.exitCode(), 130);
    EXPECT_TRUE(crawl.err().contains("stopping")) << crawl.err().toStdString();
    // The end-of-crawl steps ran: the report, with the page in hand neither counted nor done.
    EXPECT_TRUE(crawl.out().contains("Pages analysed: 2 (this run: 2)")) << crawl.out().toStdString();
    EXPECT_TRUE(crawl.out().contains("Queue:          2 done, 1 waiting")) << crawl.out().toStdString();

    const CliResult show = run({"show", "hang"});
    EXPECT_TRUE(show.out.contains("Pages crawled:  2")) << show.out.toStdString();
    EXPECT_TRUE(show.out.contains("Queue:          2 done, 1 waiting")) << show.out.toStdString();

    site.release();
    const CliResult again = run({"crawl", "hang", "--continue"});
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_EQ(site.hits("/stall.html"), 2);
    EXPECT_TRUE(again.out.contains("Pages analysed: 3 (this run: 1)")) << again.out.toStdString();
    EXPECT_TRUE(again.out.contains(" done, 0 waiting")) << again.out.toStdString();
    EXPECT_EQ(site.hits("/a.html"), 1);
}

INSTANTIATE_TEST_SUITE_P(Signals, CrawlStopCommand, ::testing::Values(SIGINT, SIGTERM),
                         [](const auto& info) { return std::string(info.param == SIGINT ? "CtrlC" : "Term"); });

TEST(CrawlTimeoutOption, AHangingTransferFailsAfterTheGivenSeconds)
{
    QTemporaryDir dir;
    StallingSite site;
    ASSERT_TRUE(site.start());
    site.page("/", "Home", "<a href=\"/stall.html\">S</a>");
    site.page("/stall.html", "Stall", "");
    ASSERT_EQ(runCli({"new", "hang", QString::fromStdString(site.base())}, dir.path()).exitCode, 0);

    CliProcess crawl({"crawl", "hang", "--timeout", "1"}, dir.path());
    ASSERT_TRUE(crawl.wait(20000));
    std::cout << "crawl with --timeout 1 took " << crawl.elapsedMs() << " ms\n";
    EXPECT_EQ(crawl.exitCode(), 0) << crawl.err().toStdString();
    EXPECT_LT(crawl.elapsedMs(), 6000);
    EXPECT_TRUE(crawl.out().contains("Queue:          2 done, 0 waiting")) << crawl.out().toStdString();

    for (const char* bad : {"0", "-3", "soon"}) {
        const CliResult r = runCli({"crawl", "hang", "--restart", "--timeout", bad}, dir.path());
        EXPECT_EQ(r.exitCode, 2) << bad;
        EXPECT_TRUE(r.err.contains("--timeout")) << r.err.toStdString();
    }
    EXPECT_TRUE(runCli({"crawl", "--help"}, dir.path()).out.contains("--timeout S"));
}

} // namespace
