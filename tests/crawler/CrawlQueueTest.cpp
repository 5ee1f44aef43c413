// The crawler's walk over the download queue: message order, limits, stop and continue,
// batches, pages never fetched twice, and the two ways a run ends early.

#include "CrawlTestSupport.h"

#include "store/QuillmereDownloaderQueue.h"

using namespace crawltest;

namespace {

class CrawlQueueTest : public CrawlFixture {};

std::string numbered(const std::string& prefix, int n)
{
    return prefix + std::to_string(n) + ".html";
}

TEST_F(CrawlQueueTest, SmallSiteWithoutLimitsIsWalkedToTheEndInOrder)
{
    site.page("/", "Home", anchor("a.html", "A") + anchor("b.html", "B"));
    site.page("/a.html", "Page A", anchor("/", "Home") + anchor("b.html", "B"));
    site.page("/b.html", "Page B", "<p>nothing to follow</p>");
    // Would forbid everything if it were read; the project URL has a host, so it is not.
    site.raw("/robots.txt", "User-agent: *\nDisallow: /\n", "text/plain");
    makeProject("/");

    crawl();

    EXPECT_EQ(delegate->calls(),
                lines("downloaderDidStart", "setWaitingQueueCount(1, 0)",
                            // the start page
                            "getPageFromURL(~/)", "downloadPageDidStart(~/, 1)",
                            "foundPage(/, index.html, Home, ~/, 1)", "initLinkProgress(2)", "setLinkProgress(1, 2)",
                            "getPageFromURL(~/a.html)", "foundLinkWithPath(/, a.html, A, ~/a.html, 2, ~/)",
                            "setLinkProgress(2, 2)", "getPageFromURL(~/b.html)",
                            "foundLinkWithPath(/, b.html, B, ~/b.html, 2, ~/)", "downloadPageDidEnd(~/, 1)",
                            "getPageFromURL(~/a.html)", "getPageFromURL(~/b.html)", "setWaitingQueueCount(2, 1)",
                            // second batch
                            "setWaitingQueueCount(2, 1)", "getPageFromURL(~/a.html)", "downloadPageDidStart(~/a.html, 2)",
                            "updatePage(~/a.html, Page A)", "initLinkProgress(2)", "setLinkProgress(1, 2)",
                            "getPageFromURL(~/)", "foundLinkWithPage(~/, Home, ~/a.html)", "setLinkProgress(2, 2)",
                            "getPageFromURL(~/b.html)", "foundLinkWithPage(~/b.html, B, ~/a.html)",
                            "downloadPageDidEnd(~/a.html, 2)", "setWaitingQueueCount(1, 2)",
                            "getPageFromURL(~/b.html)", "downloadPageDidStart(~/b.html, 2)",
                            "updatePage(~/b.html, Page B)", "initLinkProgress(0)", "downloadPageDidEnd(~/b.html, 2)",
                            "setWaitingQueueCount(0, 3)", "downloaderDidEnd"));

    const auto pages = db->pages();
    ASSERT_EQ(pages.size(), 3u);
    EXPECT_EQ(pages[0].url, "~/");
    EXPECT_EQ(pages[0].path, "/");
    EXPECT_EQ(pages[0].page, "index.html");
    EXPECT_EQ(pages[0].title, "Home");
    EXPECT_EQ(pages[0].depth, 1);
    EXPECT_EQ(pages[0].in, 1);
    EXPECT_EQ(pages[0].out, 2);
    EXPECT_DOUBLE_EQ(pages[0].weight, 1.0);
    EXPECT_EQ(pages[1].url, "~/a.html");
    EXPECT_EQ(pages[1].path, "/");
    EXPECT_EQ(pages[1].page, "a.html");
    EXPECT_EQ(pages[1].title, "Page A");
    EXPECT_EQ(pages[1].depth, 2);
    EXPECT_EQ(pages[1].in, 1);
    EXPECT_EQ(pages[1].out, 2);
    EXPECT_DOUBLE_EQ(pages[1].weight, 0.0);  // 1 / 2, integer division
    EXPECT_EQ(pages[2].url, "~/b.html");
    EXPECT_EQ(pages[2].title, "Page B");
    EXPECT_EQ(pages[2].in, 2);
    EXPECT_EQ(pages[2].out, 0);
    EXPECT_DOUBLE_EQ(pages[2].weight, 1.0);
    for (const auto& p : pages) {
        EXPECT_EQ(p.noIndex, 0) << p.url;
        EXPECT_EQ(p.noFollow, 0) << p.url;
        EXPECT_EQ(p.canonical, 0) << p.url;
    }

    // The counter of a link is its source page's incoming count at the time.
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/a.html", "A", 0}, LinkRow{"~/", "~/b.html", "B", 0},
                                         LinkRow{"~/a.html", "~/", "Home", 1},
                                         LinkRow{"~/a.html", "~/b.html", "B", 1}));
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/a.html", "/", "a.html", 2, 1},
                                         QueueRow{"~/b.html", "/", "b.html", 2, 1}));
    const auto headers = db->headers();
    ASSERT_EQ(headers.size(), 3u);
    for (const auto& h : headers)
        EXPECT_EQ(h.contentType, "text/html; charset=utf-8") << h.url;

    EXPECT_EQ(site.hits("/"), 1);
    EXPECT_EQ(site.hits("/a.html"), 1);
    EXPECT_EQ(site.hits("/b.html"), 1);
    EXPECT_EQ(site.hits("/robots.txt"), 0);
    EXPECT_EQ(project->pages_count(), 3);
    EXPECT_EQ(project->max_depth(), 2);
    EXPECT_FALSE(operation->isPossibleFirstURLError());
}

TEST_F(CrawlQueueTest, RobotsTxtAddressLosesTheHostAndIsNeverRequested)
{
    site.page("/", "Home", anchor("private/secret.html", "Secret"));
    site.page("/private/secret.html", "Secret", "");
    site.raw("/robots.txt", "User-agent: *\nDisallow: /private/\n", "text/plain");
    makeProject("/");
    TraceToLog trace(*delegate, "robots");

    crawl();

    // The fetch of "http:/127.0.0.1:PORT/robots.txt" fails before reaching any server.
    EXPECT_EQ(only(delegate->calls(), {"downloaderDidStart", "trace:Pas de fichier robots.txt", "downloaderDidEnd"}),
                traced(lines("downloaderDidStart", "trace:Pas de fichier robots.txt", "downloaderDidEnd")));
    if (kDebugTraceEnabled)  // read right after the start, before the queue is walked
        EXPECT_EQ(lineAt(delegate->calls(), 1), "trace:Pas de fichier robots.txt");
    EXPECT_EQ(site.hits("/robots.txt"), 0);
    EXPECT_EQ(operation->arrayOfDisallowedURLs(), nullptr);
    // So the disallowed page is crawled like any other.
    EXPECT_EQ(site.hits("/private/secret.html"), 1);
    ASSERT_TRUE(db->page("~/private/secret.html"));
    EXPECT_EQ(db->at("~/private/secret.html").title, "Secret");
    EXPECT_EQ(db->at("~/private/secret.html").path, "/private");
}

TEST_F(CrawlQueueTest, PageLimitTenLetsElevenPagesThroughAndAResumeStopsAtOnce)
{
    std::string body;
    for (int i = 1; i <= 14; ++i) {
        body += anchor(numbered("p", i), "P" + std::to_string(i));
        site.page("/" + numbered("p", i), "Page " + std::to_string(i), "");
    }
    site.page("/", "Home", body);
    makeProject("/", -1, 10);

    crawl();

    std::vector<std::string> started;
    started.push_back("downloadPageDidStart(~/, 1)");
    for (int i = 1; i <= 10; ++i)
        started.push_back("downloadPageDidStart(~/" + numbered("p", i) + ", 2)");
    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidStart"}), (started));
    const auto calls = delegate->calls();
    EXPECT_EQ(lineAt(calls, -3), "downloadPageDidEnd(~/p10.html, 2)");
    EXPECT_EQ(lineAt(calls, -2), "setWaitingQueueCount(4, 11)");
    EXPECT_EQ(lineAt(calls, -1), "downloaderDidEnd");

    EXPECT_EQ(project->pages_count(), 11);
    EXPECT_EQ(site.hits("/p10.html"), 1);
    EXPECT_EQ(site.hits("/p11.html"), 0);
    EXPECT_EQ(db->waitingUrls(), lines("~/p11.html", "~/p12.html", "~/p13.html", "~/p14.html"));
    EXPECT_EQ(db->at("~/p10.html").title, "Page 10");
    EXPECT_EQ(db->at("~/p11.html").title, "");  // known from the start page's link only

    // Later, with the stored count of 11, the limit acts before the first page.
    const size_t requestsBefore = site.server.requestCount();
    newDelegate();
    resume();
    EXPECT_EQ(delegate->calls(), lines("downloaderDidStart", "downloaderDidEnd"));
    EXPECT_EQ(site.server.requestCount(), requestsBefore);
    EXPECT_EQ(db->waitingUrls(), lines("~/p11.html", "~/p12.html", "~/p13.html", "~/p14.html"));
    EXPECT_EQ(project->pages_count(), 11);
}

TEST_F(CrawlQueueTest, DepthLimitTwoStopsRightAfterTheFirstDepthThreePage)
{
    site.page("/", "Home", anchor("a1.html", "A1") + anchor("a2.html", "A2"));
    site.page("/a1.html", "A1", anchor("b1.html", "B1"));
    site.page("/a2.html", "A2", anchor("b2.html", "B2"));
    site.page("/b1.html", "B1", anchor("c1.html", "C1"));
    site.page("/b2.html", "B2", anchor("c2.html", "C2"));
    site.page("/c1.html", "C1", "");
    site.page("/c2.html", "C2", "");
    makeProject("/", 2, -1);

    crawl();

    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidStart", "downloadPageDidEnd"}),
                lines("downloadPageDidStart(~/, 1)", "downloadPageDidEnd(~/, 1)",
                            "downloadPageDidStart(~/a1.html, 2)", "downloadPageDidEnd(~/a1.html, 2)",
                            "downloadPageDidStart(~/a2.html, 2)", "downloadPageDidEnd(~/a2.html, 2)",
                            "downloadPageDidStart(~/b1.html, 3)", "downloadPageDidEnd(~/b1.html, 3)"));
    // The depth-3 page was analysed in full: its link recorded, its target queued at depth 4.
    EXPECT_EQ(db->at("~/b1.html").title, "B1");
    EXPECT_EQ(db->at("~/c1.html").depth, 4);
    EXPECT_EQ(db->at("~/c1.html").title, "");
    EXPECT_EQ(db->queue(),
                rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/a1.html", "/", "a1.html", 2, 1},
                            QueueRow{"~/a2.html", "/", "a2.html", 2, 1}, QueueRow{"~/b1.html", "/", "b1.html", 3, 1},
                            QueueRow{"~/b2.html", "/", "b2.html", 3, 0}, QueueRow{"~/c1.html", "/", "c1.html", 4, 0}));
    EXPECT_EQ(site.hits("/b2.html"), 0);
    EXPECT_EQ(site.hits("/c1.html"), 0);
    EXPECT_EQ(project->max_depth(), 3);
    EXPECT_EQ(project->pages_count(), 4);
}

TEST_F(CrawlQueueTest, StopDuringAPageLetsItFinishAndContinueModeTakesTheNextEntry)
{
    site.page("/", "Home", anchor("a.html", "A") + anchor("b.html", "B") + anchor("c.html", "C"));
    site.page("/a.html", "A", anchor("d.html", "D"));
    site.page("/b.html", "B", "");
    site.page("/c.html", "C", "");
    site.page("/d.html", "D", "");
    makeProject("/");
    // Stopped once the page has arrived: its analysis goes on to the end. (A stop while its
    // transfer runs abandons it instead, see CrawlStopTest.)
    delegate->onCall = [this](const std::string& line) {
        if (line == "updatePage(~/a.html, A)")
            operation->setCanContinue(false);
    };

    crawl();

    const auto calls = delegate->calls();
    EXPECT_EQ(slice(calls, "downloadPageDidStart(~/a.html, 2)", "downloaderDidEnd"),
                lines("downloadPageDidStart(~/a.html, 2)", "updatePage(~/a.html, A)", "initLinkProgress(1)",
                            "setLinkProgress(1, 1)", "getPageFromURL(~/d.html)",
                            "foundLinkWithPath(/, d.html, D, ~/d.html, 3, ~/a.html)", "downloadPageDidEnd(~/a.html, 2)",
                            "getPageFromURL(~/d.html)", "setWaitingQueueCount(3, 2)"));
    EXPECT_EQ(lineAt(calls, -1), "downloaderDidEnd");
    EXPECT_EQ(site.hits("/b.html"), 0);
    EXPECT_EQ(db->queue(),
                rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/a.html", "/", "a.html", 2, 1},
                            QueueRow{"~/b.html", "/", "b.html", 2, 0}, QueueRow{"~/c.html", "/", "c.html", 2, 0},
                            QueueRow{"~/d.html", "/", "d.html", 3, 0}));
    EXPECT_EQ(db->at("~/a.html").title, "A");

    newDelegate();
    resume();

    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidStart"}),
                lines("downloadPageDidStart(~/b.html, 2)", "downloadPageDidStart(~/c.html, 2)",
                            "downloadPageDidStart(~/d.html, 3)"));
    EXPECT_EQ(lineAt(delegate->calls(), 0), "downloaderDidStart");
    EXPECT_EQ(lineAt(delegate->calls(), 1), "setWaitingQueueCount(3, 2)");
    EXPECT_TRUE(db->waitingUrls().empty());
    EXPECT_EQ(site.hits("/"), 1);
    EXPECT_EQ(site.hits("/a.html"), 1);
    EXPECT_EQ(db->at("~/d.html").title, "D");
    EXPECT_EQ(project->pages_count(), 5);
}

TEST_F(CrawlQueueTest, ContinueModeWithAnEmptyQueueStartsReadsRobotsTxtAndEnds)
{
    site.page("/", "Home", anchor("a.html", "A"));
    makeProject("/");
    TraceToLog trace(*delegate, "robots");

    resume();

    EXPECT_EQ(delegate->calls(),
                traced(lines("downloaderDidStart", "trace:Pas de fichier robots.txt", "downloaderDidEnd")));
    EXPECT_EQ(site.server.requestCount(), 0u);
    EXPECT_EQ(db->count("Page"), 0);
    EXPECT_EQ(db->count("DownloaderQueue"), 0);
    EXPECT_EQ(db->count("LinkHeaders"), 0);
    EXPECT_TRUE(operation->isContinueMode());
}

TEST_F(CrawlQueueTest, EntriesQueuedDuringABatchAreTakenByALaterBatch)
{
    const int n = 120;
    std::string body;
    for (int i = 1; i <= n; ++i) {
        body += anchor(numbered("p", i), "P");
        site.page("/" + numbered("p", i), "P" + std::to_string(i), i == 1 ? anchor("extra.html", "Extra") : "");
    }
    site.page("/", "Home", body);
    site.page("/extra.html", "Extra", "");
    makeProject("/");

    crawl();

    const auto calls = only(delegate->calls(), {"setWaitingQueueCount", "downloadPageDidStart"});
    // A batch opens with a count report that directly follows the previous one; the page
    // started next is the batch's first entry.
    std::vector<std::string> batchReports;
    std::vector<std::string> batchFirstPages;
    for (size_t i = 0; i < calls.size(); ++i) {
        if (callName(calls[i]) != "setWaitingQueueCount")
            continue;
        if (i == 0 || callName(calls[i - 1]) == "setWaitingQueueCount") {
            batchReports.push_back(calls[i]);
            if (i + 1 < calls.size() && callName(calls[i + 1]) == "downloadPageDidStart")
                batchFirstPages.push_back(calls[i + 1]);
        }
    }
    EXPECT_EQ(batchReports, lines("setWaitingQueueCount(1, 0)", "setWaitingQueueCount(120, 1)",
                                          "setWaitingQueueCount(21, 101)"));
    EXPECT_EQ(batchFirstPages, lines("downloadPageDidStart(~/, 1)", "downloadPageDidStart(~/p1.html, 2)",
                                             "downloadPageDidStart(~/p101.html, 2)"));

    // extra.html, queued by the second batch's first page, comes after that batch's hundred
    // entries and the twenty left for the third batch.
    std::vector<std::string> started{"downloadPageDidStart(~/, 1)"};
    for (int i = 1; i <= n; ++i)
        started.push_back("downloadPageDidStart(~/" + numbered("p", i) + ", 2)");
    started.push_back("downloadPageDidStart(~/extra.html, 3)");
    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidStart"}), (started));
    EXPECT_EQ(lineAt(delegate->calls(), -2), "setWaitingQueueCount(0, 122)");

    const auto queueRows = db->queue();
    ASSERT_EQ(queueRows.size(), size_t(n + 2));
    EXPECT_EQ(lastOf(queueRows), (QueueRow{"~/extra.html", "/", "extra.html", 3, 1}));
    EXPECT_EQ(db->count("Page"), n + 2);
    EXPECT_EQ(db->at("~/extra.html").title, "Extra");
}

TEST_F(CrawlQueueTest, AnalysedPagesAreNeverFetchedAgain)
{
    site.page("/", "Home", anchor("a.html", "A") + anchor("b.html", "B") + anchor("a.html", "A again"));
    site.page("/a.html", "A", anchor("/", "Home") + anchor("b.html", "B"));
    site.page("/b.html", "B", anchor("a.html", "A") + anchor(site.base() + "/", "Home"));
    makeProject("/");

    crawl();

    EXPECT_EQ(site.hits("/"), 1);
    EXPECT_EQ(site.hits("/a.html"), 1);
    EXPECT_EQ(site.hits("/b.html"), 1);
    EXPECT_EQ(db->count("DownloaderQueue"), 3);
    EXPECT_EQ(db->at("~/").in, 2);
    EXPECT_EQ(db->at("~/a.html").in, 3);
    EXPECT_EQ(db->at("~/b.html").in, 2);

    // A new crawl over the same database queues the start page again and skips it unasked.
    newDelegate();
    crawl();
    EXPECT_EQ(delegate->calls(),
                lines("downloaderDidStart", "setWaitingQueueCount(1, 3)", "getPageFromURL(~/)",
                            "setWaitingQueueCount(0, 4)", "downloaderDidEnd"));
    EXPECT_EQ(site.server.requestCount(), 3u);
    EXPECT_EQ(db->count("DownloaderQueue"), 4);
    EXPECT_EQ(db->count("Links"), 7);

    // And a run in continue mode finds nothing to do.
    newDelegate();
    resume();
    EXPECT_EQ(delegate->calls(), lines("downloaderDidStart", "downloaderDidEnd"));
    EXPECT_EQ(site.server.requestCount(), 3u);
}

TEST_F(CrawlQueueTest, ProjectAddressInAnotherUnicodeFormEndsTheRunAfterThatPage)
{
    // The project is "café" with a precomposed é; a later page links to "café" written
    // with a combining accent.
    const std::string cafe = "/caf\xC3\xA9";
    const std::string decomposed = site.base() + "/cafe\xCC\x81";
    site.page(cafe, "Start", anchor("page2.html", "Two"));
    site.page(cafe + "/page2.html", "Two",
              anchor(site.base() + cafe + "/first.html", "First") + anchor(decomposed, "Home")
                  + anchor("later.html", "Later"));
    site.page(cafe + "/first.html", "First", "");
    site.page(cafe + "/later.html", "Later", "");
    makeProjectWithURL(site.U(cafe));

    crawl();

    EXPECT_EQ(slice(delegate->calls(), "downloadPageDidStart(~" + cafe + "/page2.html, 2)", "--"),
                lines("downloadPageDidStart(~" + cafe + "/page2.html, 2)",
                            "updatePage(~" + cafe + "/page2.html, Two)", "initLinkProgress(3)", "setLinkProgress(1, 3)",
                            "getPageFromURL(~" + cafe + "/first.html)",
                            "foundLinkWithPath(/, first.html, First, ~" + cafe + "/first.html, 3, ~" + cafe
                                + "/page2.html)",
                            "setLinkProgress(2, 3)", "setWaitingQueueCount(0, 2)", "downloaderDidEnd",
                            "downloaderEndWithError(" + s(DownloaderOperationLibXML::firstURLErrorMessage()) + ")"));
    EXPECT_TRUE(operation->isPossibleFirstURLError());
    EXPECT_FALSE(operation->canContinue());
    EXPECT_EQ(s(DownloaderOperationLibXML::firstURLErrorMessage()),
              "Attention les URL trouvées dans les pages ne correspondent pas a celle du projet, vérifier si c'est "
              "bien http ou https par exemple !");

    // The links read before the flagged one stay; nothing of that page is queued.
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~" + cafe, "~" + cafe + "/page2.html", "Two", 0},
                                         LinkRow{"~" + cafe + "/page2.html", "~" + cafe + "/first.html", "First", 1}));
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~" + cafe, "/", "index.html", 1, 1},
                                         QueueRow{"~" + cafe + "/page2.html", "/", "page2.html", 2, 1}));
    EXPECT_EQ(db->at("~" + cafe + "/first.html").title, "");
    EXPECT_FALSE(db->page("~" + cafe + "/later.html"));
    EXPECT_EQ(site.hits(cafe), 1);
    EXPECT_EQ(site.hits(cafe + "/page2.html"), 1);
    EXPECT_EQ(site.hits(cafe + "/first.html"), 0);
    EXPECT_EQ(site.hits("/cafe\xCC\x81"), 0);
}

TEST_F(CrawlQueueTest, FaultWhileAnalysingAPageAbandonsThatPageOnly)
{
    site.page("/", "Home", anchor("bad.html", "Bad") + anchor("good.html", "Good"));
    // The second href climbs above the site's root.
    site.page("/bad.html", "Bad", anchor("c.html", "C") + anchor("../../../x", "Up") + anchor("d.html", "D"));
    site.page("/good.html", "Good", anchor("e.html", "E"));
    site.page("/c.html", "C", "");
    site.page("/e.html", "E", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(slice(delegate->calls(), "downloadPageDidStart(~/bad.html, 2)", "getPageFromURL(~/good.html)"),
                lines("downloadPageDidStart(~/bad.html, 2)",
                            "updatePage(~/bad.html, Bad)", "initLinkProgress(3)", "setLinkProgress(1, 3)",
                            "getPageFromURL(~/c.html)", "foundLinkWithPath(/, c.html, C, ~/c.html, 3, ~/bad.html)",
                            "setLinkProgress(2, 3)", "setWaitingQueueCount(1, 2)"));
    // The crawl went on with the next entry and the pages that one queued.
    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidStart"}),
                lines("downloadPageDidStart(~/, 1)", "downloadPageDidStart(~/bad.html, 2)",
                            "downloadPageDidStart(~/good.html, 2)", "downloadPageDidStart(~/e.html, 3)"));
    EXPECT_EQ(lineAt(delegate->calls(), -1), "downloaderDidEnd");

    EXPECT_EQ(db->at("~/bad.html").title, "Bad");
    EXPECT_EQ(db->at("~/bad.html").out, 1);
    EXPECT_EQ(db->at("~/c.html").title, "");  // recorded before the fault, never queued
    EXPECT_FALSE(db->page("~/d.html"));
    EXPECT_EQ(db->queue(),
                rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/bad.html", "/", "bad.html", 2, 1},
                            QueueRow{"~/good.html", "/", "good.html", 2, 1},
                            QueueRow{"~/e.html", "/", "e.html", 3, 1}));
    EXPECT_EQ(site.hits("/c.html"), 0);
    EXPECT_FALSE(operation->isPossibleFirstURLError());
}

} // namespace
