// What the crawler makes of one page: titles, robots meta tags, canonical links, which
// anchors it follows, targets known not to be HTML, pages without data.

#include "CrawlTestSupport.h"

using namespace crawltest;

namespace {

class CrawlPageAnalysisTest : public CrawlFixture {
protected:
    // The messages of one page's analysis: from its start message up to the count report
    // that follows it.
    Lines pageCalls(const std::string& path, int depth)
    {
        return slice(delegate->calls(), "downloadPageDidStart(~" + path + ", " + std::to_string(depth) + ")",
                     "setWaitingQueueCount");
    }
    // host:port of the site, for hand-written absolute URLs.
    std::string host() const { return site.base().substr(std::string("http://").size()); }
};

TEST_F(CrawlPageAnalysisTest, RobotsMetaInCapitalsWithNoIndexNoFollowFlagsThePageAndReadsNoLink)
{
    site.page("/", "Home", anchor("both.html", "Both"));
    site.page("/both.html", "Both", anchor("c1.html", "C1"),
              "<meta name=\"ROBOTS\" content=\"NOINDEX,NOFOLLOW\">");
    site.page("/c1.html", "C1", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/both.html", 2), lines("downloadPageDidStart(~/both.html, 2)", "updatePage(~/both.html, Both)"));
    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidEnd"}), lines("downloadPageDidEnd(~/, 1)"));
    const auto both = db->page("~/both.html");
    ASSERT_TRUE(both);
    EXPECT_EQ(both->title, "Both");
    EXPECT_EQ(both->noIndex, 1);
    EXPECT_EQ(both->noFollow, 1);
    EXPECT_EQ(both->canonical, 0);
    EXPECT_EQ(both->out, 0);
    EXPECT_FALSE(db->page("~/c1.html"));
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/both.html", "Both", 0}));
    EXPECT_EQ(db->waitingUrls(), Lines{});
    EXPECT_EQ(db->count("DownloaderQueue"), 2);
    EXPECT_EQ(site.hits("/c1.html"), 0);
}

TEST_F(CrawlPageAnalysisTest, SeparateNoIndexAndNoFollowTagsAddUp)
{
    site.page("/", "Home", anchor("two-tags.html", "Two tags") + anchor("described.html", "Described"));
    site.page("/two-tags.html", "Two tags", anchor("c1.html", "C1"),
              "<meta name=\"robots\" content=\"noindex\"><meta name=\"Robots\" content=\"nofollow\">");
    // Only meta tags named robots count.
    site.page("/described.html", "Described", anchor("c2.html", "C2"),
              "<meta name=\"description\" content=\"noindex, nofollow\">");
    site.page("/c2.html", "C2", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/two-tags.html", 2),
              lines("downloadPageDidStart(~/two-tags.html, 2)", "updatePage(~/two-tags.html, Two tags)"));
    EXPECT_EQ(db->at("~/two-tags.html").noIndex, 1);
    EXPECT_EQ(db->at("~/two-tags.html").noFollow, 1);
    EXPECT_FALSE(db->page("~/c1.html"));

    EXPECT_EQ(db->at("~/described.html").noIndex, 0);
    EXPECT_EQ(db->at("~/described.html").noFollow, 0);
    EXPECT_EQ(db->at("~/c2.html").title, "C2");
}

TEST_F(CrawlPageAnalysisTest, NoFollowAloneLeavesThePageUnflaggedAndItsLinksFollowed)
{
    site.page("/", "Home", anchor("nf.html", "NF"));
    site.page("/nf.html", "NF", anchor("c2.html", "C2"), "<meta name=\"robots\" content=\"nofollow\">");
    site.page("/c2.html", "C2", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/nf.html", 2),
              lines("downloadPageDidStart(~/nf.html, 2)", "updatePage(~/nf.html, NF)", "initLinkProgress(1)",
                    "setLinkProgress(1, 1)", "getPageFromURL(~/c2.html)",
                    "foundLinkWithPath(/, c2.html, C2, ~/c2.html, 3, ~/nf.html)", "downloadPageDidEnd(~/nf.html, 2)",
                    "getPageFromURL(~/c2.html)"));
    const auto nf = db->page("~/nf.html");
    EXPECT_EQ(nf->noIndex, 0);
    EXPECT_EQ(nf->noFollow, 0);
    EXPECT_EQ(nf->out, 1);
    EXPECT_EQ(db->at("~/c2.html").title, "C2");
    EXPECT_EQ(site.hits("/c2.html"), 1);
}

TEST_F(CrawlPageAnalysisTest, NoIndexAloneFlagsThePageAndStillFollowsItsLinks)
{
    site.page("/", "Home", anchor("ni.html", "NI"));
    site.page("/ni.html", "NI", anchor("c3.html", "C3"), "<meta name=\"Robots\" content=\"NoIndex\">");
    site.page("/c3.html", "C3", "");
    makeProject("/");

    crawl();

    // The title is written twice: once with the flag, once as for any page.
    EXPECT_EQ(pageCalls("/ni.html", 2),
              lines("downloadPageDidStart(~/ni.html, 2)", "updatePage(~/ni.html, NI)", "updatePage(~/ni.html, NI)",
                    "initLinkProgress(1)", "setLinkProgress(1, 1)", "getPageFromURL(~/c3.html)",
                    "foundLinkWithPath(/, c3.html, C3, ~/c3.html, 3, ~/ni.html)", "downloadPageDidEnd(~/ni.html, 2)",
                    "getPageFromURL(~/c3.html)"));
    const auto ni = db->page("~/ni.html");
    EXPECT_EQ(ni->title, "NI");
    EXPECT_EQ(ni->noIndex, 1);
    EXPECT_EQ(ni->noFollow, 0);
    // The flag update leaves the record's in-memory out-link count one ahead, and the link's
    // increment writes that: one link, a count of 2.
    EXPECT_EQ(ni->out, 2);
    EXPECT_EQ(lastOf(db->links()), (LinkRow{"~/ni.html", "~/c3.html", "C3", 1}));
    EXPECT_EQ(db->at("~/c3.html").title, "C3");
}

TEST_F(CrawlPageAnalysisTest, StartPageWithNoIndexNoFollowLeavesNoPageRecord)
{
    site.page("/", "Home", anchor("a.html", "A"), "<meta name=\"robots\" content=\"noindex, nofollow\">");
    site.page("/a.html", "A", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(delegate->calls(), lines("downloaderDidStart", "setWaitingQueueCount(1, 0)", "getPageFromURL(~/)",
                                       "downloadPageDidStart(~/, 1)", "setWaitingQueueCount(0, 1)", "downloaderDidEnd"));
    EXPECT_EQ(db->count("Page"), 0);
    EXPECT_EQ(db->count("Links"), 0);
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}));
    ASSERT_EQ(db->headers().size(), 1u);
    EXPECT_EQ(db->headers()[0].url, "~/");
    EXPECT_EQ(site.hits("/a.html"), 0);
}

TEST_F(CrawlPageAnalysisTest, StartPageNamingAnotherCanonicalURLLeavesNoPageRecord)
{
    site.page("/", "Home", anchor("a.html", "A"), "<link rel=\"canonical\" href=\"http://example.org/\">");
    site.page("/a.html", "A", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(delegate->calls(), lines("downloaderDidStart", "setWaitingQueueCount(1, 0)", "getPageFromURL(~/)",
                                       "downloadPageDidStart(~/, 1)", "setWaitingQueueCount(0, 1)", "downloaderDidEnd"));
    EXPECT_EQ(db->count("Page"), 0);
    EXPECT_EQ(db->count("Links"), 0);
    EXPECT_EQ(db->count("DownloaderQueue"), 1);
    EXPECT_EQ(site.hits("/a.html"), 0);
}

TEST_F(CrawlPageAnalysisTest, CanonicalEqualUpToWwwSchemeAndOneTrailingSlashIsIgnored)
{
    site.page("/", "Home",
              anchor("c1.html", "C1") + anchor("c2.html", "C2") + anchor("c3.html", "C3") + anchor("c4.html", "C4"));
    site.page("/c1.html", "C1", anchor("k1.html", "K1"),
              "<link rel=\"canonical\" href=\"https://www." + host() + "/c1.html/\">");
    site.page("/c2.html", "C2", anchor("k2.html", "K2"), "<link rel=\"canonical\" href=\"" + site.base() + "/c2.html\">");
    site.page("/c3.html", "C3", anchor("k3.html", "K3"),
              "<link rel=\"Canonical\" href=\"" + site.base() + "/c3.html/\">");
    site.page("/c4.html", "C4", anchor("k4.html", "K4"), "<link rel=\"canonical\" href=\"https://" + host() + "/c4.html\">");
    for (const char* k : {"/k1.html", "/k2.html", "/k3.html", "/k4.html"})
        site.page(k, "K", "");
    makeProject("/");

    crawl();

    for (const std::string name : {"c1", "c2", "c3", "c4"}) {
        const auto page = db->page("~/" + name + ".html");
        ASSERT_TRUE(page) << name;
        EXPECT_EQ(page->canonical, 0) << name;
        EXPECT_EQ(page->out, 1) << name;
        EXPECT_EQ(only(pageCalls("/" + name + ".html", 2), {"downloadPageDidEnd"}),
                  lines("downloadPageDidEnd(~/" + name + ".html, 2)"));
    }
    for (const char* k : {"/k1.html", "/k2.html", "/k3.html", "/k4.html"})
        EXPECT_EQ(site.hits(k), 1) << k;
    EXPECT_EQ(QuillmerePage::getPagesCanonicalForProject(project).size(), 0);
}

TEST_F(CrawlPageAnalysisTest, CanonicalNamingAnotherURLMarksThePageAndStopsItsAnalysis)
{
    site.page("/", "Home", anchor("can.html", "Can") + anchor("slashes.html", "Slashes"));
    site.page("/can.html", "Can", anchor("x.html", "X"),
              "<link rel=\"canonical\" href=\"" + site.base() + "/other.html\">");
    // Only one trailing slash is forgiven.
    site.page("/slashes.html", "Slashes", anchor("y.html", "Y"),
              "<link rel=\"canonical\" href=\"" + site.base() + "/slashes.html//\">");
    site.page("/x.html", "X", "");
    site.page("/y.html", "Y", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/can.html", 2), lines("downloadPageDidStart(~/can.html, 2)", "updatePage(~/can.html, Can)"));
    EXPECT_EQ(pageCalls("/slashes.html", 2),
              lines("downloadPageDidStart(~/slashes.html, 2)", "updatePage(~/slashes.html, Slashes)"));
    for (const std::string url : {"~/can.html", "~/slashes.html"}) {
        const auto page = db->page(url);
        ASSERT_TRUE(page) << url;
        EXPECT_EQ(page->canonical, 1) << url;
        EXPECT_EQ(page->noIndex, 0) << url;
        EXPECT_EQ(page->out, 0) << url;
    }
    EXPECT_EQ(db->at("~/can.html").title, "Can");
    // The canonical address is not a link: nothing is recorded or queued for it.
    EXPECT_FALSE(db->page("~/other.html"));
    EXPECT_FALSE(db->page("~/x.html"));
    EXPECT_FALSE(db->page("~/y.html"));
    EXPECT_EQ(db->count("Links"), 2);
    EXPECT_EQ(db->count("DownloaderQueue"), 3);
    EXPECT_EQ(site.hits("/other.html"), 0);
    EXPECT_EQ(QuillmerePage::getPagesCanonicalForProject(project).size(), 2);
}

TEST_F(CrawlPageAnalysisTest, TheLastCanonicalLinkDecides)
{
    site.page("/", "Home", anchor("self-last.html", "SelfLast") + anchor("other-last.html", "OtherLast"));
    site.page("/self-last.html", "SelfLast", anchor("k1.html", "K1"),
              "<link rel=\"canonical\" href=\"http://example.org/\"><link rel=\"canonical\" href=\"" + site.base()
                  + "/self-last.html\">");
    site.page("/other-last.html", "OtherLast", anchor("k2.html", "K2"),
              "<link rel=\"canonical\" href=\"" + site.base() + "/other-last.html\"><link rel=\"canonical\" "
                  "href=\"http://example.org/\">");
    site.page("/k1.html", "K1", "");
    site.page("/k2.html", "K2", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(db->at("~/self-last.html").canonical, 0);
    EXPECT_EQ(db->at("~/k1.html").title, "K1");
    EXPECT_EQ(db->at("~/other-last.html").canonical, 1);
    EXPECT_FALSE(db->page("~/k2.html"));
}

TEST_F(CrawlPageAnalysisTest, OnlyARelOfExactlyNofollowSkipsTheAnchor)
{
    site.page("/", "Home",
              anchor("n1.html", "N1", "rel=\"nofollow\"") + anchor("n2.html", "N2", "rel=\"NoFollow\"")
                  + anchor("n3.html", "N3", "rel=\"nofollow noopener\""));
    site.page("/n1.html", "N1", "");
    site.page("/n2.html", "N2", "");
    site.page("/n3.html", "N3", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/", 1),
              lines("downloadPageDidStart(~/, 1)", "foundPage(/, index.html, Home, ~/, 1)", "initLinkProgress(3)",
                    "setLinkProgress(1, 3)", "setLinkProgress(2, 3)", "getPageFromURL(~/n2.html)",
                    "foundLinkWithPath(/, n2.html, N2, ~/n2.html, 2, ~/)", "setLinkProgress(3, 3)",
                    "getPageFromURL(~/n3.html)", "foundLinkWithPath(/, n3.html, N3, ~/n3.html, 2, ~/)",
                    "downloadPageDidEnd(~/, 1)", "getPageFromURL(~/n2.html)", "getPageFromURL(~/n3.html)"));
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/n2.html", "N2", 0}, LinkRow{"~/", "~/n3.html", "N3", 0}));
    EXPECT_EQ(db->pageUrls(), lines("~/", "~/n2.html", "~/n3.html"));
    EXPECT_EQ(site.hits("/n1.html"), 0);
    EXPECT_EQ(db->at("~/").out, 2);
}

TEST_F(CrawlPageAnalysisTest, ExploringNofollowLinksFollowsEveryAnchor)
{
    site.page("/", "Home",
              anchor("n1.html", "N1", "rel=\"nofollow\"") + anchor("n2.html", "N2", "rel=\"NoFollow\"")
                  + anchor("n3.html", "N3", "rel=\"nofollow noopener\""));
    site.page("/n1.html", "N1", "");
    site.page("/n2.html", "N2", "");
    site.page("/n3.html", "N3", "");
    makeProject("/");
    project->setExplore_no_follow(true);

    crawl();

    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/n1.html", "N1", 0}, LinkRow{"~/", "~/n2.html", "N2", 0},
                                  LinkRow{"~/", "~/n3.html", "N3", 0}));
    EXPECT_EQ(site.hits("/n1.html"), 1);
    EXPECT_EQ(db->at("~/n1.html").title, "N1");
    EXPECT_EQ(db->at("~/").out, 3);
}

TEST_F(CrawlPageAnalysisTest, MailtoAndJavascriptHrefsAreSkippedButMailtoWithoutColonIsNot)
{
    site.page("/", "Home",
              anchor("MAILTO:someone@example.org", "Mail") + anchor(" javascript:void(0)", "Script")
                  + "<a name=\"top\">no href</a>" + anchor("mailto", "Bare"));
    site.page("/mailto", "Bare mailto", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/", 1),
              lines("downloadPageDidStart(~/, 1)", "foundPage(/, index.html, Home, ~/, 1)", "initLinkProgress(4)",
                    "setLinkProgress(1, 4)", "setLinkProgress(2, 4)", "setLinkProgress(3, 4)",
                    "setLinkProgress(4, 4)", "getPageFromURL(~/mailto)",
                    "foundLinkWithPath(/, mailto, Bare, ~/mailto, 2, ~/)", "downloadPageDidEnd(~/, 1)",
                    "getPageFromURL(~/mailto)"));
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/mailto", "Bare", 0}));
    EXPECT_EQ(db->queue(),
              rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/mailto", "/", "mailto", 2, 1}));
    EXPECT_EQ(db->at("~/mailto").title, "Bare mailto");
    EXPECT_EQ(site.requestedPaths(), lines("/", "/mailto"));
}

TEST_F(CrawlPageAnalysisTest, TwoAnchorsToOneNewPageGiveTwoLinksAndOneQueueEntry)
{
    site.page("/", "Home", anchor("a.html", "A"));
    site.page("/a.html", "A", anchor("b.html", "B one") + anchor("b.html", "B two"));
    site.page("/b.html", "B", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/a.html", 2),
              lines("downloadPageDidStart(~/a.html, 2)", "updatePage(~/a.html, A)", "initLinkProgress(2)",
                    "setLinkProgress(1, 2)", "getPageFromURL(~/b.html)",
                    "foundLinkWithPath(/, b.html, B one, ~/b.html, 3, ~/a.html)", "setLinkProgress(2, 2)",
                    "getPageFromURL(~/b.html)", "foundLinkWithPage(~/b.html, B two, ~/a.html)",
                    "downloadPageDidEnd(~/a.html, 2)", "getPageFromURL(~/b.html)"));
    // Both links carry the source's incoming count (1) as counter.
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/a.html", "A", 0}, LinkRow{"~/a.html", "~/b.html", "B one", 1},
                                  LinkRow{"~/a.html", "~/b.html", "B two", 1}));
    EXPECT_EQ(db->at("~/a.html").out, 2);
    EXPECT_EQ(db->at("~/b.html").in, 2);
    EXPECT_EQ(db->at("~/b.html").depth, 3);
    EXPECT_DOUBLE_EQ(db->at("~/b.html").weight, 0.0);  // 2 / 3
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/a.html", "/", "a.html", 2, 1},
                                  QueueRow{"~/b.html", "/", "b.html", 3, 1}));
    EXPECT_EQ(site.hits("/b.html"), 1);
}

TEST_F(CrawlPageAnalysisTest, ImageTargetIsLinkedUntilItsHeadersAreKnownAndSkippedAfter)
{
    const std::string png = std::string("\x89PNG\r\n\x1a\n", 8) + std::string(40, 'x');
    site.page("/", "Home", anchor("img.png", "Logo") + anchor("page2.html", "Two"));
    site.page("/page2.html", "Two", anchor("img.png", "Logo again"));
    site.raw("/img.png", png, "image/png");
    makeProject("/");

    crawl();

    ASSERT_FALSE(errorTitle().isEmpty());
    EXPECT_EQ(pageCalls("/img.png", 2),
              lines("downloadPageDidStart(~/img.png, 2)", "updatePage(~/img.png, " + s(errorTitle()) + ")"));
    // Once the image's answer is on record, page2's anchor to it is neither recorded nor queued.
    EXPECT_EQ(pageCalls("/page2.html", 2),
              lines("downloadPageDidStart(~/page2.html, 2)", "updatePage(~/page2.html, Two)", "initLinkProgress(1)",
                    "setLinkProgress(1, 1)", "downloadPageDidEnd(~/page2.html, 2)"));
    EXPECT_EQ(db->links(), rowsOf(LinkRow{"~/", "~/img.png", "Logo", 0}, LinkRow{"~/", "~/page2.html", "Two", 0}));
    EXPECT_EQ(db->queue(), rowsOf(QueueRow{"~/", "/", "index.html", 1, 1}, QueueRow{"~/img.png", "/", "img.png", 2, 1},
                                  QueueRow{"~/page2.html", "/", "page2.html", 2, 1}));
    const auto img = db->page("~/img.png");
    ASSERT_TRUE(img);
    EXPECT_EQ(img->title, s(errorTitle()));
    EXPECT_EQ(img->in, 1);
    EXPECT_EQ(db->at("~/page2.html").out, 0);
    const auto header = db->header("~/img.png");
    ASSERT_TRUE(header);
    EXPECT_EQ(header->contentType, "image/png");
    EXPECT_EQ(header->contentLength, qint64(png.size()));
    EXPECT_EQ(site.hits("/img.png"), 1);
}

TEST_F(CrawlPageAnalysisTest, PagesWithoutDataAreRecordedWithTheErrorTitleAndNoLinks)
{
    site.page("/", "Home", anchor("missing.html", "Missing") + anchor("doc.pdf", "Doc"));
    site.raw("/doc.pdf", "%PDF-1.4 not really", "application/pdf");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/missing.html", 2),
              lines("downloadPageDidStart(~/missing.html, 2)", "updatePage(~/missing.html, " + s(errorTitle()) + ")"));
    EXPECT_EQ(pageCalls("/doc.pdf", 2),
              lines("downloadPageDidStart(~/doc.pdf, 2)", "updatePage(~/doc.pdf, " + s(errorTitle()) + ")"));
    EXPECT_EQ(db->at("~/missing.html").title, s(errorTitle()));
    EXPECT_EQ(db->at("~/doc.pdf").title, s(errorTitle()));
    ASSERT_TRUE(db->header("~/missing.html"));
    EXPECT_NE(db->headerAt("~/missing.html").contentType.find("text/html"), std::string::npos);
    ASSERT_TRUE(db->header("~/doc.pdf"));
    EXPECT_EQ(db->headerAt("~/doc.pdf").contentType, "application/pdf");
    EXPECT_EQ(only(delegate->calls(), {"downloadPageDidEnd"}), lines("downloadPageDidEnd(~/, 1)"));
}

TEST_F(CrawlPageAnalysisTest, StartPageWithoutHtmlIsRecordedThroughFoundPage)
{
    site.raw("/doc.pdf", "%PDF-1.4 not really", "application/pdf");
    makeProject("/doc.pdf");

    crawl();

    EXPECT_EQ(delegate->calls(),
              lines("downloaderDidStart", "setWaitingQueueCount(1, 0)", "getPageFromURL(~/doc.pdf)",
                    "downloadPageDidStart(~/doc.pdf, 1)",
                    "foundPage(/, index.html, " + s(errorTitle()) + ", ~/doc.pdf, 1)", "setWaitingQueueCount(0, 1)",
                    "downloaderDidEnd"));
    ASSERT_EQ(db->pages().size(), 1u);
    EXPECT_EQ(db->pages()[0].title, s(errorTitle()));
    EXPECT_EQ(db->pages()[0].path, "/");
    EXPECT_EQ(db->pages()[0].page, "index.html");
}

TEST_F(CrawlPageAnalysisTest, MissingOrBlankTitleIsRecordedAsNoTitle)
{
    site.page("/", "Home",
              anchor("untitled.html", "U") + anchor("blank.html", "B") + anchor("spaced.html", "S"));
    site.page("/untitled.html", std::nullopt, "<p>text</p>");
    site.page("/blank.html", " \n\t  ", "<p>text</p>");
    site.page("/spaced.html", "\n   Spaced out  \n", "<p>text</p>");
    makeProject("/");

    crawl();

    EXPECT_EQ(db->at("~/untitled.html").title, "No Title");
    EXPECT_EQ(db->at("~/blank.html").title, "No Title");
    EXPECT_EQ(db->at("~/spaced.html").title, "Spaced out");
    EXPECT_EQ(lineAt(pageCalls("/blank.html", 2), 1), "updatePage(~/blank.html, No Title)");
}

TEST_F(CrawlPageAnalysisTest, PageWithoutAnchorsOrBodyIsRecordedAndQueuesNothing)
{
    site.page("/", "Home", anchor("bare.html", "Bare") + anchor("plain.html", "Plain"));
    site.raw("/bare.html", "<html><head><title>Bare</title></head></html>", "text/html");
    site.page("/plain.html", "Plain", "<p>Only text, <b>no</b> anchors.</p>");
    makeProject("/");

    crawl();

    EXPECT_EQ(pageCalls("/bare.html", 2),
              lines("downloadPageDidStart(~/bare.html, 2)", "updatePage(~/bare.html, Bare)", "initLinkProgress(0)",
                    "downloadPageDidEnd(~/bare.html, 2)"));
    EXPECT_EQ(pageCalls("/plain.html", 2),
              lines("downloadPageDidStart(~/plain.html, 2)", "updatePage(~/plain.html, Plain)", "initLinkProgress(0)",
                    "downloadPageDidEnd(~/plain.html, 2)"));
    EXPECT_EQ(db->at("~/bare.html").title, "Bare");
    EXPECT_EQ(db->at("~/plain.html").title, "Plain");
    EXPECT_EQ(db->count("DownloaderQueue"), 3);
    EXPECT_EQ(db->count("Links"), 2);
}

} // namespace
