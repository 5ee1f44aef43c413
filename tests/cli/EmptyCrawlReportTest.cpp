#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

std::string page(const std::string& title, const std::string& head, const std::string& body = "<a href=\"/a.html\">a</a>")
{
    return "<html><head><title>" + title + "</title>" + head + "</head><body>" + body + "</body></html>";
}

// A crawl whose start page stops it: the report says why and what to do, and the crawl
// itself behaves as always (exit status 0, nothing analysed).
class EmptyCrawlReport : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
        server.setPage("/a.html", page("A", ""));
    }

    CliResult crawl(const QString& url)
    {
        EXPECT_EQ(runCli({"new", "site", url}, dir.path()).exitCode, 0);
        return runCli({"crawl", "site", "--timeout", "5"}, dir.path());
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
};

TEST_F(EmptyCrawlReport, AStartPageCanonicalElsewhere)
{
    server.setPage("/", page("Docs", "<link rel=\"canonical\" href=\"https://docs.example.org/3/\">"));
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Nothing was analysed.")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("declares another canonical URL: https://docs.example.org/3/")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("quillmere new NAME https://docs.example.org/3/")) << r.out.toStdString();
}

TEST_F(EmptyCrawlReport, AStartPageNoIndexNoFollow)
{
    server.setPage("/", page("Hidden", "<meta name=\"robots\" content=\"noindex, nofollow\">"));
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("is marked noindex and nofollow")) << r.out.toStdString();
}

TEST_F(EmptyCrawlReport, AStartPageAnsweringAnError)
{
    server.setPage("/", page("Oops", ""), "text/html", 503);
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("answered with the status 503")) << r.out.toStdString();
}

TEST_F(EmptyCrawlReport, AStartPageOnAServerThatRefuses)
{
    LocalHttpServer gone;
    ASSERT_TRUE(gone.start());
    const QString url = QString::fromStdString(gone.baseUrl());
    gone.stop();
    const CliResult r = crawl(url);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("could not be fetched (refused)")) << r.out.toStdString();
}

TEST_F(EmptyCrawlReport, AStartPageRedirectedToAnotherHost)
{
    const std::string elsewhere = "http://localhost:" + std::to_string(server.port()) + "/home.html";
    server.setRedirect("/", elsewhere, 301);
    // The other host's own pages link to it: nothing of the project's host is left to crawl.
    server.setPage("/home.html", page("Home", "", "<a href=\"http://localhost:" + std::to_string(server.port()) + "/a.html\">a</a>"));
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("redirects to another host: " + QString::fromStdString(elsewhere))) << r.out.toStdString();
}

TEST_F(EmptyCrawlReport, AStartPageThatIsNotHtml)
{
    server.setPage("/", "just text", "text/plain");
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("is not HTML (text/plain)")) << r.out.toStdString();
}

TEST_F(EmptyCrawlReport, ACrawlThatAnalysedPagesSaysNothingOfIt)
{
    server.setPage("/", page("Home", ""));
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("Pages analysed: 2")) << r.out.toStdString();
    EXPECT_FALSE(r.out.contains("Nothing was analysed"));
}

} // namespace
