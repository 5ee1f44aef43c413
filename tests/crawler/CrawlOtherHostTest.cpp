// Links that the link rules judge internal but that name another server (user-info before
// the host): recorded as the rules say, never requested from that server.

#include "CrawlTestSupport.h"

#include <QFile>

using namespace crawltest;

namespace {

class CrawlOtherHostTest : public CrawlFixture {
protected:
    void SetUp() override
    {
        CrawlFixture::SetUp();
        ASSERT_TRUE(other.start());
        other.setPage("/page.html", "<html><head><title>Other</title></head><body></body></html>");
        other.setPage("/b.html", "<html><head><title>Other B</title></head><body></body></html>");
        other.setPage("/landing.html", "<html><head><title>Landing</title></head><body></body></html>");
    }
    std::string errorLog() const
    {
        QFile file(app.path() + QStringLiteral("/site_errors.log"));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return file.readAll().toStdString();
    }
    // "127.0.0.1:<site port>": what the project's URL starts with once its scheme is gone.
    std::string siteHostPort() const { return "127.0.0.1:" + std::to_string(site.server.port()); }

    LocalHttpServer other;
};

TEST_F(CrawlOtherHostTest, UserInfoLinksToAnotherServerAreRecordedButNeverRequested)
{
    const std::string viaIp = "http://" + siteHostPort() + "@127.0.0.1:" + std::to_string(other.port()) + "/page.html";
    const std::string viaName = "http://" + siteHostPort() + "@localhost:" + std::to_string(other.port()) + "/b.html";
    site.page("/", "Home", anchor(viaIp, "Via IP") + anchor(viaName, "Via name") + anchor("a.html", "A"));
    site.page("/a.html", "A", "");
    makeProject("/");
    // Both begin with the site's base URL, so the logs and rows show them as "~@...".
    const std::string ip = "~" + viaIp.substr(site.base().size());
    const std::string name = "~" + viaName.substr(site.base().size());

    crawl();

    EXPECT_EQ(other.requestCount(), 0u);
    // The links are recorded and their targets queued and done, as for a server that cannot
    // be reached: the error title, a header record without type or lengths.
    EXPECT_EQ(db->at(ip).title, s(errorTitle()));
    EXPECT_EQ(db->at(name).title, s(errorTitle()));
    EXPECT_EQ(db->at(ip).in, 1);
    const HeaderRow header = db->headerAt(ip);
    EXPECT_EQ(header.contentType, "");
    EXPECT_EQ(header.contentLength, -1);
    EXPECT_EQ(header.downloadedLength, -1);
    EXPECT_TRUE(db->waitingUrls().empty());
    EXPECT_EQ(db->at("~/a.html").title, "A");
    // The log masks what stands before "@": it reads as credentials.
    const std::string maskedIp = "http://***@127.0.0.1:" + std::to_string(other.port()) + "/page.html";
    const std::string maskedName = "http://***@localhost:" + std::to_string(other.port()) + "/b.html";
    EXPECT_NE(errorLog().find("SKIP::OtherHost " + maskedIp + " not requested: it is not on " + site.base()),
              std::string::npos)
        << errorLog();
    EXPECT_NE(errorLog().find("SKIP::OtherHost " + maskedName), std::string::npos) << errorLog();
    // The analysis of each looks like that of an unreachable page.
    EXPECT_EQ(slice(delegate->calls(), "downloadPageDidStart(" + ip + ", 2)", "setWaitingQueueCount"),
              lines("downloadPageDidStart(" + ip + ", 2)", "updatePage(" + ip + ", " + s(errorTitle()) + ")"));
}

TEST_F(CrawlOtherHostTest, ARedirectHopToAnotherServerIsStillFollowed)
{
    const std::string landing = other.url("/landing.html");
    site.page("/", "Home", anchor("go.html", "Go"));
    site.redirect("/go.html", landing, 302);
    makeProject("/");

    crawl();

    // The site's own server chose the other one: the hop is taken inside the fetch, and the
    // target, queued as a page of its own, is fetched from there too.
    EXPECT_EQ(other.requestCount(), 2u);
    EXPECT_EQ(errorLog(), "");
    EXPECT_EQ(site.hits("/go.html"), 1);
    const auto queue = db->queue();
    ASSERT_EQ(queue.size(), 3u);
    EXPECT_EQ(queue[2].url, landing);
    EXPECT_EQ(queue[2].done, 1);
}

TEST_F(CrawlOtherHostTest, LinksOnTheProjectsOwnServerAreFetchedAsBefore)
{
    site.page("/", "Home", anchor(site.base() + "/a.html", "A") + anchor("b.html", "B"));
    site.page("/a.html", "A", "");
    site.page("/b.html", "B", "");
    makeProject("/");

    crawl();

    EXPECT_EQ(db->at("~/a.html").title, "A");
    EXPECT_EQ(db->at("~/b.html").title, "B");
    EXPECT_EQ(errorLog(), "");
}

} // namespace
