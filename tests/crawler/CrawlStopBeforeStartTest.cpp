// A stop asked for before the crawl's operation has begun: the run asks for no page and
// still sends its start and its end, so the end steps run.

#include "CrawlTestSupport.h"

using namespace crawltest;

namespace {

class CrawlStopBeforeStartTest : public CrawlFixture {};

TEST_F(CrawlStopBeforeStartTest, AStopBeforeTheRunBeginsIsKept)
{
    site.page("/", "Home", anchor("a.html", "A"));
    site.page("/a.html", "A", "");
    makeProject("/");
    operation = DownloaderOperationLibXML::initWithProject(project, delegate);
    EXPECT_TRUE(operation->canContinue());
    operation->setCanContinue(false);
    EXPECT_TRUE(runOperation(*queue, operation));

    EXPECT_FALSE(operation->canContinue());
    EXPECT_EQ(site.hits("/"), 0);
    EXPECT_EQ(site.hits("/a.html"), 0);
    const auto calls = delegate->calls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front(), "downloaderDidStart");
    EXPECT_EQ(lineAt(calls, -1), "downloaderDidEnd");
    for (const auto& line : calls)
        EXPECT_EQ(line.rfind("downloadPageDidStart", 0), std::string::npos) << line;
}

TEST_F(CrawlStopBeforeStartTest, AnOperationLeftAloneCrawlsToTheEnd)
{
    site.page("/", "Home", anchor("a.html", "A"));
    site.page("/a.html", "A", "");
    makeProject("/");
    crawl();
    EXPECT_TRUE(operation->canContinue());
    EXPECT_EQ(site.hits("/a.html"), 1);
}

} // namespace
