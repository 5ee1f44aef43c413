// The web rules' crawl on the crawler's own interface: what it records in the crawl tables
// and beside them, and that its counts stay true across stops, continues and restarts.
#include "CrawlTestSupport.h"

#include "crawler/CrawlOperationFactory.h"
#include "crawler/CrawlStartDecision.h"
#include "crawler/WebCrawlOperation.h"
#include "store/LinkRules.h"
#include "store/WebAudit.h"
#include "store/WebStore.h"

using namespace crawltest;

namespace {

class WebCrawl : public CrawlFixture {
protected:
    void makeWebProject(qint32 limitPageCount = -1)
    {
        makeProject("/", -1, limitPageCount);
        ASSERT_TRUE(LinkRulesStore::makeWeb(project->sqlite3Database()));
    }

    std::shared_ptr<DownloaderOperationLibXML> webCrawl(const WebCrawlOptions& options = WebCrawlOptions())
    {
        operation = CrawlOperationFactory::operationForProject(project, delegate);
        auto web = std::dynamic_pointer_cast<WebCrawlOperation>(operation);
        EXPECT_TRUE(web);
        if (web)
            web->setOptions(options);
        operation->setParallelFetches(4);
        EXPECT_TRUE(runOperation(*queue, operation));
        return operation;
    }

    // url -> (in, out) of every page.
    std::map<std::string, std::pair<int, int>> counts() const
    {
        std::map<std::string, std::pair<int, int>> out;
        for (const auto& row : db->rows("select url, in_link_count, out_link_count from Page"))
            out[db->u(row[0])] = {std::stoi(row[1]), std::stoi(row[2])};
        return out;
    }

    // A small site: four pages, an image, a style sheet, a mail link and a missing page.
    void buildSite()
    {
        site.page("/", std::string("Home"),
                  anchor("/a.html", "A") + anchor("a.html", "A again") + anchor("/b.html", "B")
                      + "<img src='logo.png' alt='Logo'>" + anchor("mailto:x@example.org", "mail"));
        site.page("/a.html", std::string("A"), anchor("/b.html", "B") + anchor("/", "Home") + anchor("/c.html#sec", "C"),
                  "<link rel='stylesheet' href='/style.css'>");
        site.page("/b.html", std::string("B"), anchor("c.html", "C") + anchor("/missing.html", "gone"));
        site.page("/c.html", std::string("C"), "<h2 id='sec'>S</h2>" + anchor("/#nowhere", "Home"));
        site.raw("/logo.png", "PNG", "image/png");
        site.raw("/style.css", "body{}", "text/css");
    }
};

TEST_F(WebCrawl, ThePagesOfTheSiteAndTheLinksBetweenThemAreCounted)
{
    buildSite();
    makeWebProject();
    webCrawl();
    const auto c = counts();
    // Home: from a; out: a twice, b. a: from home twice; out: b, home, c. b: from home and a;
    // out: c, missing. c: from a and b; out: home. The missing page is listed with its links.
    EXPECT_EQ(c.at("~/"), std::make_pair(2, 3));
    EXPECT_EQ(c.at("~/a.html"), std::make_pair(2, 3));
    EXPECT_EQ(c.at("~/b.html"), std::make_pair(2, 2));
    EXPECT_EQ(c.at("~/c.html"), std::make_pair(2, 1));
    EXPECT_EQ(c.at("~/missing.html"), std::make_pair(1, 0));
    EXPECT_EQ(c.size(), 5u);  // the image and the style sheet are not pages
    EXPECT_EQ(db->count("Links"), 9);
    EXPECT_EQ(site.hits("/logo.png"), 1);
    EXPECT_EQ(site.hits("/style.css"), 1);
    const auto targets = db->rows("select url, kind, verdict from WebTarget order by url");
    std::map<std::string, std::pair<std::string, std::string>> byUrl;
    for (const auto& row : targets)
        byUrl[db->u(row[0])] = {row[1], row[2]};
    EXPECT_EQ(byUrl.at("~/logo.png"), std::make_pair(std::string("resource"), std::string("ok")));
    EXPECT_EQ(byUrl.at("~/missing.html"), std::make_pair(std::string("page"), std::string("broken")));
    EXPECT_EQ(byUrl.at("mailto:x@example.org"), std::make_pair(std::string("other"), std::string("not-checked")));
    EXPECT_EQ(WebAudit::countBrokenTargets(project), 1);
    EXPECT_EQ(WebAudit::countBrokenFragments(project), 1);  // /#nowhere; c.html#sec exists
}

TEST_F(WebCrawl, CountsAfterAStopAndAContinueAreThoseOfOneWholeCrawl)
{
    buildSite();
    makeWebProject();
    webCrawl();
    const auto whole = counts();
    const auto wholeTargets = db->rows("select url, kind, verdict, status from WebTarget order by url");

    // Again, in runs of two pages: each limit lets one page past it.
    CrawlRecordKeeper::restartProject(project);
    project->setLimit_page_count(1);
    newDelegate();
    webCrawl();
    EXPECT_GT(db->count("DownloaderQueue where perform_done = 0"), 0);
    for (int run = 0; run < 10 && db->count("DownloaderQueue where perform_done = 0") > 0; ++run) {
        project->setLimit_page_count(project->pages_count() + 1);
        newDelegate();
        webCrawl();
    }
    EXPECT_EQ(db->count("DownloaderQueue where perform_done = 0"), 0);
    EXPECT_EQ(counts(), whole);
    EXPECT_EQ(db->rows("select url, kind, verdict, status from WebTarget order by url"), wholeTargets);
}

TEST_F(WebCrawl, ARestartStartsFromNothingAndTheVacuumLeavesTheCountsAlone)
{
    buildSite();
    makeWebProject();
    webCrawl();
    const auto whole = counts();
    vacuum();
    EXPECT_EQ(counts(), whole);

    // The site changed: a restart must not keep what the last crawl learnt.
    site.raw("/logo.png", "gone", "text/html", 404);
    CrawlRecordKeeper::restartProject(project);
    EXPECT_EQ(db->count("WebTarget"), 0);
    EXPECT_EQ(db->count("WebLink"), 0);
    EXPECT_EQ(db->count("LinkHeaders"), 0);
    newDelegate();
    webCrawl();
    EXPECT_EQ(counts(), whole);
    EXPECT_EQ(db->rows("select verdict from WebTarget where url like '%/logo.png'"),
              (std::vector<std::vector<std::string>>{{"broken"}}));
}

TEST_F(WebCrawl, RobotsTxtKeepsTheCrawlFromAPageAndSaysWhichRule)
{
    buildSite();
    site.raw("/robots.txt", "User-agent: *\nDisallow: /b\n\nUser-agent: Quillmere\nDisallow: /c.html\n", "text/plain");
    makeWebProject();
    webCrawl();
    // The Quillmere group is the crawler's: /b.html is allowed, /c.html is not.
    EXPECT_EQ(site.hits("/b.html"), 1);
    EXPECT_EQ(site.hits("/c.html"), 0);
    EXPECT_EQ(db->rows("select verdict, rule from WebTarget where url like '%/c.html'"),
              (std::vector<std::vector<std::string>>{{"robots", "Disallow: /c.html"}}));

    CrawlRecordKeeper::restartProject(project);
    newDelegate();
    WebCrawlOptions ignore;
    ignore.obeyRobots = false;
    webCrawl(ignore);
    EXPECT_EQ(site.hits("/c.html"), 1);
}

TEST_F(WebCrawl, ExcludedAndIncludedURLsAreNotAskedFor)
{
    buildSite();
    makeWebProject();
    WebCrawlOptions options;
    options.excludes.append(QRegularExpression(QStringLiteral("b\\.html$")));
    webCrawl(options);
    EXPECT_EQ(site.hits("/b.html"), 0);
    EXPECT_EQ(db->rows("select verdict from WebTarget where url like '%/b.html'"),
              (std::vector<std::vector<std::string>>{{"excluded"}}));
}

TEST_F(WebCrawl, LinksToAPageNamedFirstByALinkElementCountAsLinksBetweenPages)
{
    // The head's <link rel=next> names b.html before the body's anchors do: b.html is taken
    // for a resource until it answers HTML, and the anchors to it still count.
    site.page("/", std::string("Home"), anchor("/b.html", "B") + anchor("/a.html", "A"),
              "<link rel='next' href='/b.html'>");
    site.page("/a.html", std::string("A"), anchor("/b.html", "B"));
    site.page("/b.html", std::string("B"), anchor("/", "Home"));
    makeWebProject();
    webCrawl();
    const auto c = counts();
    EXPECT_EQ(c.at("~/b.html"), std::make_pair(2, 1));
    EXPECT_EQ(c.at("~/"), std::make_pair(1, 2));
    EXPECT_EQ(db->rows("select kind from WebTarget where url like '%/b.html'"),
              (std::vector<std::vector<std::string>>{{"page"}}));
}

TEST_F(WebCrawl, LinksStillToCheckMakeAStoppedCrawlOneToContinue)
{
    buildSite();
    makeWebProject();
    webCrawl();
    EXPECT_EQ(CrawlStartDecision::situationForProject(project), CrawlStartDecision::Situation::Finished);
    // As a crawl killed with a check in flight leaves it: the queue is empty, a link is not
    // checked yet.
    site.raw("/late.png", "PNG", "image/png");
    ASSERT_GT(WebStore::insertTarget(project, site.U("/late.png"), QStringLiteral("resource"), QStringLiteral("http"),
                                     QStringLiteral("pending")),
              0);
    qint64 waiting = 0;
    EXPECT_EQ(CrawlStartDecision::situationForProject(project, &waiting), CrawlStartDecision::Situation::Interrupted);
    EXPECT_EQ(waiting, 1);
    newDelegate();
    webCrawl();
    EXPECT_EQ(site.hits("/late.png"), 1);
    EXPECT_EQ(db->rows("select verdict from WebTarget where url like '%/late.png'"),
              (std::vector<std::vector<std::string>>{{"ok"}}));
    EXPECT_EQ(CrawlStartDecision::situationForProject(project), CrawlStartDecision::Situation::Finished);
}

} // namespace
