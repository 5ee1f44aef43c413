// Stopping a crawl while a transfer hangs: the transfer is abandoned at once, its page is
// neither analysed nor counted nor marked done, and a continued crawl fetches it again.

#include "CrawlTestSupport.h"

#include "support/StallingSite.h"

#include <QElapsedTimer>

#include <iostream>


using namespace crawltest;

namespace {

class CrawlStopTest : public CrawlFixture, public ::testing::WithParamInterface<StallingSite::Stall> {
protected:
    void SetUp() override
    {
        CrawlFixture::SetUp();
        ASSERT_TRUE(stalling.start());
        stalling.page("/", "Home", anchor("a.html", "A") + anchor("stall.html", "Stall") + anchor("b.html", "B"));
        stalling.page("/a.html", "A", "");
        stalling.page("/stall.html", "Stall", "");
        stalling.page("/b.html", "B", "");
        project = Project::createProjectWithName(QStringLiteral("site"), q(stalling.base() + "/"), -1, -1);
        ASSERT_TRUE(project);
        newStallingDelegate();
        db = std::make_unique<Db>(project, stalling.base());
    }
    void newStallingDelegate() { delegate = std::make_shared<RecordingDelegate>(project, stalling.base()); }

    StallingSite stalling{GetParam()};
};

TEST_P(CrawlStopTest, AStopAbandonsTheHangingTransferAtOnceAndContinueFetchesItAgain)
{
    operation = DownloaderOperationLibXML::initWithProject(project, delegate);
    operation->setParallelFetches(parallelFetches);
    auto finished = std::make_shared<std::atomic<bool>>(false);
    operation->setCompletionBlock([finished] { finished->store(true); });
    queue->addOperation(operation);
    ASSERT_TRUE(spinUntil([&] { return stalling.hits("/stall.html") == 1; }, 10000));
    spinUntil([] { return false; }, 300);  // the transfer settles into its wait

    QElapsedTimer stopping;
    stopping.start();
    operation->setCanContinue(false);
    ASSERT_TRUE(spinUntil([&] { return finished->load(); }, 5000));
    const qint64 stopMs = stopping.elapsed();
    EXPECT_LT(stopMs, 1000);
    std::cout << "stop took " << stopMs << " ms\n";

    const auto calls = delegate->calls();
    EXPECT_EQ(slice(calls, "downloadPageDidStart(~/stall.html, 2)", "downloaderDidEnd"),
              lines("downloadPageDidStart(~/stall.html, 2)", "downloadPageWasAbandoned(~/stall.html, 2)",
                    "setWaitingQueueCount(2, 2)"));
    EXPECT_EQ(lineAt(calls, -1), "downloaderDidEnd");
    // Nothing recorded for it: no header record, the empty title its link gave it, and its
    // entry still waiting before the rest.
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/a.html", "/", "a.html", 2, 1},
                                  QueueRow{"~/stall.html", "/", "stall.html", 2, 0},
                                  QueueRow{"~/b.html", "/", "b.html", 2, 0}));
    EXPECT_EQ(db->at("~/stall.html").title, "");
    EXPECT_FALSE(db->header("~/stall.html"));
    EXPECT_EQ(project->pages_count(), 2);
    EXPECT_EQ(stalling.hits("/b.html"), 0);

    stalling.release();
    newStallingDelegate();
    resume();

    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidStart"}),
              lines("downloadPageDidStart(~/stall.html, 2)", "downloadPageDidStart(~/b.html, 2)"));
    EXPECT_EQ(stalling.hits("/stall.html"), 2);
    EXPECT_EQ(db->at("~/stall.html").title, "Stall");
    EXPECT_TRUE(db->waitingUrls().empty());
    // Counted as an uninterrupted crawl would count.
    EXPECT_EQ(project->pages_count(), 4);
}

INSTANTIATE_TEST_SUITE_P(Stalls, CrawlStopTest,
                         ::testing::Values(StallingSite::Stall::BeforeHeaders, StallingSite::Stall::AfterHeaders),
                         [](const auto& info) {
                             return info.param == StallingSite::Stall::BeforeHeaders ? std::string("SilentServer")
                                                                                     : std::string("AfterHeaders");
                         });

} // namespace
