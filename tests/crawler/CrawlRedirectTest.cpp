// Redirects: the target is queued one level deeper under a path and name taken from its
// URL; nothing is recorded for the redirecting URL itself.

#include "CrawlTestSupport.h"

using namespace crawltest;

namespace {

class CrawlRedirectTest : public CrawlFixture {
protected:
    Lines pageCalls(const std::string& path, int depth)
    {
        return slice(delegate->calls(), "downloadPageDidStart(~" + path + ", " + std::to_string(depth) + ")",
                     "setWaitingQueueCount");
    }
};

TEST_F(CrawlRedirectTest, TargetIsQueuedOneLevelDeeperWithPathAndNameFromItsURL)
{
    site.page("/", "Home", anchor("old.html", "Old") + anchor(site.base() + "/dir/", "Dir"));
    site.redirect("/old.html", "/a/b.html", 301);
    site.redirect("/dir/", "/x/y.html", 302);
    site.page("/a/b.html", "B", "");
    site.page("/x/y.html", "Y", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/old.html", 2), lines("downloadPageDidStart(~/old.html, 2)", "getPageFromURL(~/a/b.html)"));
    EXPECT_EQ(pageCalls("/dir/", 2), lines("downloadPageDidStart(~/dir/, 2)", "getPageFromURL(~/x/y.html)"));
    // A requested URL that does not end in "/": the target's directory and file name. One
    // that does: the whole target path as a directory, with index.html.
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/old.html", "/", "old.html", 2, 1},
                                  QueueRow{"~/dir/", "/dir", "index.html", 2, 1},
                                  QueueRow{"~/a/b.html", "/a/", "b.html", 3, 1},
                                  QueueRow{"~/x/y.html", "/x/y.html/", "index.html", 3, 1}));
    EXPECT_EQ(pageCalls("/a/b.html", 3),
              lines("downloadPageDidStart(~/a/b.html, 3)", "foundPage(/a/, b.html, B, ~/a/b.html, 3)",
                    "initLinkProgress(0)", "downloadPageDidEnd(~/a/b.html, 3)"));
    EXPECT_EQ(pageCalls("/x/y.html", 3),
              lines("downloadPageDidStart(~/x/y.html, 3)", "foundPage(/x/y.html/, index.html, Y, ~/x/y.html, 3)",
                    "initLinkProgress(0)", "downloadPageDidEnd(~/x/y.html, 3)"));

    const auto b = db->page("~/a/b.html");
    ASSERT_TRUE(b);
    EXPECT_EQ(b->path, "/a/");
    EXPECT_EQ(b->page, "b.html");
    EXPECT_EQ(b->depth, 3);
    EXPECT_EQ(b->in, 0);
    const auto y = db->page("~/x/y.html");
    ASSERT_TRUE(y);
    EXPECT_EQ(y->path, "/x/y.html/");
    EXPECT_EQ(y->page, "index.html");

    // The redirecting URLs keep the empty title their links gave them, and get no header.
    EXPECT_EQ(db->at("~/old.html").title, "");
    EXPECT_EQ(db->at("~/dir/").title, "");
    EXPECT_FALSE(db->header("~/old.html"));
    EXPECT_FALSE(db->header("~/dir/"));
    EXPECT_TRUE(db->header("~/a/b.html"));
    EXPECT_EQ(db->headers().size(), 3u);
    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidEnd"}),
              lines("downloadPageDidEnd(~/, 1)", "downloadPageDidEnd(~/a/b.html, 3)",
                    "downloadPageDidEnd(~/x/y.html, 3)"));

    // Following the redirect fetches the target once, its own entry once more.
    EXPECT_EQ(site.hits("/old.html"), 1);
    EXPECT_EQ(site.hits("/a/b.html"), 2);
    EXPECT_EQ(site.hits("/dir/"), 1);
    EXPECT_EQ(site.hits("/x/y.html"), 2);
}

TEST_F(CrawlRedirectTest, RedirectedStartPageIsRecordedOnlyUnderItsTarget)
{
    site.redirect("/", "/home/start.html");
    site.page("/home/start.html", "Start", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(delegate->calls(),
              lines("downloaderDidStart", "setWaitingQueueCount(1, 0)", "getPageFromURL(~/)",
                    "downloadPageDidStart(~/, 1)", "getPageFromURL(~/home/start.html)", "setWaitingQueueCount(1, 1)",
                    "setWaitingQueueCount(1, 1)", "getPageFromURL(~/home/start.html)",
                    "downloadPageDidStart(~/home/start.html, 2)",
                    "foundPage(/home/start.html/, index.html, Start, ~/home/start.html, 2)", "initLinkProgress(0)",
                    "downloadPageDidEnd(~/home/start.html, 2)", "setWaitingQueueCount(0, 2)", "downloaderDidEnd"));
    EXPECT_EQ(db->pageUrls(), lines("~/home/start.html"));
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1},
                                  QueueRow{"~/home/start.html", "/home/start.html/", "index.html", 2, 1}));
    EXPECT_FALSE(db->header("~/"));
}

TEST_F(CrawlRedirectTest, WaitingTargetIsQueuedAgainAndAnAnalysedTargetIsNot)
{
    site.page("/", "Home", anchor("old1.html", "Old 1") + anchor("t.html", "T") + anchor("old2.html", "Old 2"));
    site.redirect("/old1.html", "/t.html");
    site.redirect("/old2.html", "/t.html");
    site.page("/t.html", "T", anchor("old1.html", "Back"));
    makeProject("/");

    crawl();

    // old1 is handled while t.html still waits: t.html gets a second entry. old2 comes after
    // t.html was analysed: no entry.
    EXPECT_EQ(pageCalls("/old1.html", 2), lines("downloadPageDidStart(~/old1.html, 2)", "getPageFromURL(~/t.html)"));
    EXPECT_EQ(pageCalls("/old2.html", 2), lines("downloadPageDidStart(~/old2.html, 2)", "getPageFromURL(~/t.html)"));
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/old1.html", "/", "old1.html", 2, 1},
                                  QueueRow{"~/t.html", "/", "t.html", 2, 1}, QueueRow{"~/old2.html", "/", "old2.html", 2, 1},
                                  QueueRow{"~/t.html", "/", "t.html", 3, 1}));
    // The second entry of t.html finds it analysed and asks for nothing else.
    const auto calls = delegate->calls();
    ASSERT_GE(calls.size(), 4u);
    EXPECT_EQ(Lines(calls.end() - 4, calls.end()),
              lines("setWaitingQueueCount(1, 4)", "getPageFromURL(~/t.html)", "setWaitingQueueCount(0, 5)",
                    "downloaderDidEnd"));
    EXPECT_EQ(only(calls, {"downloadPageDidStart"}),
              lines("downloadPageDidStart(~/, 1)", "downloadPageDidStart(~/old1.html, 2)",
                    "downloadPageDidStart(~/t.html, 2)", "downloadPageDidStart(~/old2.html, 2)"));

    // t.html's link back to old1 is recorded, but old1, already in the queue, is not queued
    // again and keeps its empty title.
    EXPECT_EQ(lastOf(db->links()), (LinkRow{"~/t.html", "~/old1.html", "Back", 1}));
    EXPECT_EQ(db->at("~/old1.html").title, "");
    EXPECT_EQ(db->at("~/old1.html").in, 2);
    EXPECT_EQ(db->at("~/t.html").title, "T");
    EXPECT_EQ(site.hits("/old1.html"), 1);
    EXPECT_EQ(site.hits("/t.html"), 3);
}

} // namespace
