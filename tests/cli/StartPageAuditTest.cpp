#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

std::string page(const std::string& title, const std::string& head, const std::string& body = "<a href=\"/a.html\">a</a>")
{
    return "<html><head><title>" + title + "</title>" + head + "</head><body>" + body + "</body></html>";
}

int requestsFor(const LocalHttpServer& server, const std::string& path)
{
    int n = 0;
    for (const auto& r : server.requests())
        if (r.path == path)
            ++n;
    return n;
}

// What a crawl makes of a start page that stops it: its report and its exit status.
class StartPageAudit : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
        server.setPage("/a.html", page("A", ""));
    }

    CliResult crawl(const QString& url, const QStringList& flags = {})
    {
        EXPECT_EQ(runCli({"new", "site", url}, dir.path()).exitCode, 0);
        return runCli(QStringList{"crawl", "site", "--timeout", "5"} + flags, dir.path());
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
};

TEST_F(StartPageAudit, FailOnBrokenFailsWhenTheStartPageAnswersAnError)
{
    server.setPage("/", page("Gone", ""), "text/html", 404);
    const CliResult r = crawl(base, {"--fail-on-broken"});
    EXPECT_EQ(r.exitCode, 4) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("404")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(base)) << r.err.toStdString();
}

TEST_F(StartPageAudit, FailOnBrokenFailsWhenTheStartPageAnswersAServerError)
{
    server.setPage("/", page("Oops", ""), "text/html", 503);
    const CliResult r = crawl(base, {"--fail-on-broken"});
    EXPECT_EQ(r.exitCode, 4) << r.out.toStdString() << r.err.toStdString();
}

TEST_F(StartPageAudit, FailOnBrokenFailsWhenTheStartPageCannotBeFetched)
{
    LocalHttpServer gone;
    ASSERT_TRUE(gone.start());
    const QString url = QString::fromStdString(gone.baseUrl());
    gone.stop();
    const CliResult r = crawl(url, {"--fail-on-broken"});
    EXPECT_EQ(r.exitCode, 4) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("refused")) << r.err.toStdString();
}

TEST_F(StartPageAudit, WithoutFailOnBrokenAFailedStartPageStillExitsZero)
{
    server.setPage("/", page("Gone", ""), "text/html", 404);
    EXPECT_EQ(crawl(base).exitCode, 0);
}

TEST_F(StartPageAudit, ASoundSiteStillPassesFailOnBroken)
{
    server.setPage("/", page("Home", ""));
    const CliResult r = crawl(base, {"--fail-on-broken"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
}

// The report's diagnosis reads what the crawl recorded: the start page is asked for once.
TEST_F(StartPageAudit, ACanonicalStartPageIsAskedForOnce)
{
    server.setPage("/", page("Docs", "<link rel=\"canonical\" href=\"https://docs.example.org/3/\">"));
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("declares another canonical URL: https://docs.example.org/3/")) << r.out.toStdString();
    EXPECT_EQ(requestsFor(server, "/"), 1);
}

TEST_F(StartPageAudit, ANoIndexNoFollowStartPageIsAskedForOnce)
{
    server.setPage("/", page("Hidden", "<meta name=\"robots\" content=\"noindex, nofollow\">"));
    const CliResult r = crawl(base);
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("is marked noindex and nofollow")) << r.out.toStdString();
    EXPECT_EQ(requestsFor(server, "/"), 1);
}

} // namespace
