// The vacuum run after a crawl: links to non-HTML resources come off the out-link counts
// of the pages that carry them; nothing is deleted.

#include "CrawlTestSupport.h"

using namespace crawltest;

namespace {

class VacuumCleanerTest : public CrawlFixture {
protected:
    // Everything but the out-link counts of the pages.
    std::vector<std::vector<std::string>> snapshotWithoutOutCounts()
    {
        auto all = db->snapshot();
        for (auto& row : all)
            if (row.size() == 12)  // a Page row
                row[9] = "-";
        return all;
    }
};

TEST_F(VacuumCleanerTest, EachRunTakesLinksToNonHtmlPagesOffTheirSourcesAgain)
{
    site.page("/", "Home",
              anchor("img.png", "Logo") + anchor("img.png", "Logo again") + anchor("page.html", "Page")
                  + anchor("doc.pdf", "Doc"));
    site.page("/page.html", "Page", anchor("doc.pdf", "Doc"));
    site.raw("/img.png", std::string("\x89PNG\r\n\x1a\n", 8), "image/png");
    site.raw("/doc.pdf", "%PDF-1.4", "application/pdf");
    makeProject("/");
    crawl();
    ASSERT_EQ(db->pageUrls(), lines("~/", "~/img.png", "~/page.html", "~/doc.pdf"));
    ASSERT_EQ(db->at("~/").out, 4);
    ASSERT_EQ(db->at("~/page.html").out, 1);
    ASSERT_EQ(db->at("~/img.png").in, 2);
    ASSERT_EQ(db->at("~/doc.pdf").in, 2);
    const auto before = snapshotWithoutOutCounts();

    newDelegate();
    vacuum();

    EXPECT_EQ(delegate->calls(),
              lines("vacuumCleanerDidStart", "vacuumProgressIndex(0, 2)", "vacuumingPage(~/img.png)",
                    "vacuumProgressIndex(1, 2)", "vacuumingPage(~/doc.pdf)", "vacuumCleanerDidEnd"));
    EXPECT_EQ(db->at("~/").out, 1);
    EXPECT_EQ(db->at("~/page.html").out, 0);
    EXPECT_EQ(db->at("~/img.png").out, 0);
    EXPECT_EQ(db->at("~/doc.pdf").out, 0);
    EXPECT_EQ(snapshotWithoutOutCounts(), before);

    // No memory of the first run: the same counts go down again, below zero.
    newDelegate();
    vacuum();

    EXPECT_EQ(delegate->calls(),
              lines("vacuumCleanerDidStart", "vacuumProgressIndex(0, 2)", "vacuumingPage(~/img.png)",
                    "vacuumProgressIndex(1, 2)", "vacuumingPage(~/doc.pdf)", "vacuumCleanerDidEnd"));
    EXPECT_EQ(db->at("~/").out, -2);
    EXPECT_EQ(db->at("~/page.html").out, -1);
    EXPECT_EQ(db->at("~/img.png").in, 2);
    EXPECT_EQ(db->at("~/doc.pdf").in, 2);
    EXPECT_EQ(db->count("Links"), 5);
    EXPECT_EQ(snapshotWithoutOutCounts(), before);
}

TEST_F(VacuumCleanerTest, SiteOfHtmlPagesOnlyGivesJustStartAndEnd)
{
    site.page("/", "Home", anchor("a.html", "A"));
    site.page("/a.html", "A", anchor("/", "Home"));
    makeProject("/");
    crawl();
    const auto before = db->snapshot();

    newDelegate();
    vacuum();

    EXPECT_EQ(delegate->calls(), lines("vacuumCleanerDidStart", "vacuumCleanerDidEnd"));
    EXPECT_EQ(db->snapshot(), before);
    EXPECT_EQ(db->at("~/").out, 1);
}

TEST_F(VacuumCleanerTest, HtmlWithCharsetAndXhtmlAreNotCleanedWhateverTheirCase)
{
    site.page("/", "Home", anchor("x.xhtml", "X") + anchor("p.html", "P"), "", "text/html;charset=ISO-8859-1");
    site.page("/x.xhtml", "X", "", "", "Application/XHTML+xml");
    site.page("/p.html", "P", "", "", "text/html; charset=utf-8");
    makeProject("/");
    crawl();
    ASSERT_EQ(db->headerAt("~/").contentType, "text/html;charset=ISO-8859-1");
    ASSERT_EQ(db->headerAt("~/x.xhtml").contentType, "Application/XHTML+xml");
    // Not taken as a page by the crawler, but its type names html.
    ASSERT_EQ(db->at("~/x.xhtml").title, s(errorTitle()));
    ASSERT_EQ(db->at("~/").out, 2);
    const auto before = db->snapshot();

    newDelegate();
    vacuum();

    EXPECT_EQ(delegate->calls(), lines("vacuumCleanerDidStart", "vacuumCleanerDidEnd"));
    EXPECT_EQ(db->snapshot(), before);
}

TEST_F(VacuumCleanerTest, NonHtmlPageThatNothingLinksToIsReportedAndChangesNothing)
{
    site.raw("/logo.png", std::string("\x89PNG\r\n\x1a\n", 8), "image/png");
    makeProject("/logo.png");
    crawl();
    ASSERT_EQ(db->pageUrls(), lines("~/logo.png"));
    const auto before = db->snapshot();

    newDelegate();
    vacuum();

    EXPECT_EQ(delegate->calls(), lines("vacuumCleanerDidStart", "vacuumProgressIndex(0, 1)",
                                       "vacuumingPage(~/logo.png)", "vacuumCleanerDidEnd"));
    EXPECT_EQ(db->snapshot(), before);
}

} // namespace
