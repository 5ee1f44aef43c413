// Redirect loops: a target already queued 20 times is not queued again, so a site that
// redirects in a circle ends like any other; the error log says why.

#include "CrawlTestSupport.h"

#include <QFile>

using namespace crawltest;

namespace {

class CrawlRedirectLoopTest : public CrawlFixture {
protected:
    std::string errorLog() const
    {
        QFile file(app.path() + QStringLiteral("/site_errors.log"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return file.readAll().toStdString();
    }
    long entriesFor(const std::string& url) const
    {
        const auto rows = db->queue();
        return std::count_if(rows.begin(), rows.end(), [&](const QueueRow& r) { return r.url == url; });
    }
};

TEST_F(CrawlRedirectLoopTest, AURLRedirectingToItselfIsQueuedTwentyTimesAndTheCrawlEnds)
{
    site.page("/", "Home", anchor("loop.html", "Loop") + anchor("a.html", "A"));
    site.redirect("/loop.html", "/loop.html", 302);
    site.page("/a.html", "A", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(lineAt(delegate->calls(), -1), "downloaderDidEnd");
    EXPECT_EQ(entriesFor("~/loop.html"), 20);
    EXPECT_TRUE(db->waitingUrls().empty());
    // Each entry one level deeper than the one before: 2 from the link, then 3 to 21.
    EXPECT_EQ(lastOf(db->queue()), (QueueRow{"~/loop.html", "/", "loop.html", 21, 1}));
    // The rest of the site is crawled as usual; the looping URL keeps the empty title its
    // link gave it.
    EXPECT_EQ(db->at("~/a.html").title, "A");
    EXPECT_EQ(db->at("~/loop.html").title, "");
    EXPECT_NE(errorLog().find("SKIP::RedirectURL to " + site.base() + "/loop.html: queued 20 times already"),
              std::string::npos)
        << errorLog();
}

TEST_F(CrawlRedirectLoopTest, TwoURLsRedirectingToEachOtherEndTheCrawl)
{
    site.page("/", "Home", anchor("a.html", "A") + anchor("b.html", "B"));
    site.redirect("/a.html", "/b.html", 302);
    site.redirect("/b.html", "/a.html", 302);
    makeProject("/");

    crawl();

    EXPECT_EQ(lineAt(delegate->calls(), -1), "downloaderDidEnd");
    EXPECT_TRUE(db->waitingUrls().empty());
    EXPECT_LE(entriesFor("~/a.html"), 20);
    EXPECT_LE(entriesFor("~/b.html"), 20);
    EXPECT_EQ(entriesFor("~/a.html") + entriesFor("~/b.html"), 40);
    EXPECT_NE(errorLog().find("the site redirects in a loop"), std::string::npos) << errorLog();
}

TEST_F(CrawlRedirectLoopTest, AnOrdinaryRedirectLeavesNothingInTheErrorLog)
{
    site.page("/", "Home", anchor("old.html", "Old"));
    site.redirect("/old.html", "/new.html");
    site.page("/new.html", "New", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(db->at("~/new.html").title, "New");
    EXPECT_EQ(entriesFor("~/new.html"), 1);
    EXPECT_EQ(errorLog(), "");
}

} // namespace
