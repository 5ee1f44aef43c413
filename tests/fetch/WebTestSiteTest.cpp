// The web rules' test site answers as its truth says, so that the end-to-end tests that
// compare a crawl with that truth compare with what the servers really do.
#include "support/RawAnswer.h"
#include "support/WebTestSite.h"

#include <gtest/gtest.h>

#include <set>

namespace {

bool has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(WebTestSiteTest, ThreeHostsAndARefusedPort)
{
    WebTestSite site;
    ASSERT_TRUE(site.start());
    EXPECT_EQ(site.site().address(), "127.0.0.1");
    EXPECT_EQ(site.external().address(), "127.0.0.2");
    EXPECT_EQ(site.robotsHost().address(), "127.0.0.3");
    EXPECT_EQ(askUrl("GET", site.startUrl()).status, 200);
    EXPECT_EQ(askUrl("GET", site.refusedUrl("/refused.html")).status, 0);
}

TEST(WebTestSiteTest, InternalUrlsAnswerAsTheTruthSays)
{
    WebTestSite site;
    ASSERT_TRUE(site.start());
    const WebSiteTruth& truth = site.truth();
    ASSERT_FALSE(truth.okInternal.empty());
    for (const std::string& url : truth.okInternal) {
        const int status = askUrl("GET", url).status;
        EXPECT_TRUE(status == 200 || status == 301 || status == 302) << url << " " << status;
    }
    for (const std::string& url : truth.crawledPages)
        EXPECT_TRUE(has(askUrl("GET", url).head, "Content-Type: text/html")) << url;
    for (const auto& broken : truth.broken) {
        if (broken.kind == "external")
            continue;
        EXPECT_EQ(std::to_string(askUrl("GET", broken.url).status), broken.status) << broken.url;
        EXPECT_TRUE(has(askUrl("GET", broken.sourceUrl).body, broken.url.substr(broken.url.rfind('/') + 1)))
            << broken.sourceUrl << " does not name " << broken.url;
    }
    // Closed by robots.txt, but there for --ignore-robots.
    for (const std::string& path : truth.robotsClosedPaths)
        EXPECT_EQ(askUrl("GET", site.site().url(path)).status, 200) << path;
    const RawAnswer robots = askUrl("GET", site.site().url("/robots.txt"));
    EXPECT_TRUE(has(robots.body, "User-agent: quillmere\nDisallow: /private/\n"));
    EXPECT_TRUE(has(robots.body, "User-agent: *\nDisallow: /\n"));
    for (const auto& skip : truth.robots) {
        const std::string host = skip.url.substr(0, skip.url.find('/', 8));
        EXPECT_TRUE(has(askUrl("GET", host + "/robots.txt").body, skip.rule)) << skip.url;
    }
    // The big page is over 1 MiB and its links come last.
    const RawAnswer big = askUrl("GET", site.site().url("/big.html"));
    EXPECT_GT(big.body.size(), 1024u * 1024u);
    EXPECT_GT(big.body.find("big-missing.html"), 1024u * 1024u);
}

TEST(WebTestSiteTest, ExternalHostsAnswerAsTheTruthSays)
{
    WebTestSite site;
    ASSERT_TRUE(site.start());
    std::set<std::string> verdicts;
    for (const auto& external : site.truth().externals) {
        verdicts.insert(external.verdict);
        // Redirects are followed by a check: /to-site's 200 is the site's.
        if (external.status.empty() || external.status == "refused" || has(external.url, "/to-site"))
            continue;
        EXPECT_EQ(std::to_string(askUrl("GET", external.url).status), external.status) << external.url;
    }
    EXPECT_EQ(verdicts, (std::set<std::string>{"ok", "broken", "blocked", "robots"}));
    site.external().clearRequests();
    EXPECT_TRUE(has(askUrl("GET", site.external().url("/challenge")).head, "cf-mitigated: challenge"));
    const RawAnswer back = askUrl("GET", site.external().url("/to-site"));
    EXPECT_EQ(back.status, 301);
    EXPECT_TRUE(has(back.head, "Location: " + site.site().url("/from-external.html")));
    EXPECT_EQ(askUrl("GET", site.site().url("/from-external.html")).status, 200);
    EXPECT_EQ(askUrl("GET", site.external().url("/robots.txt")).status, 404);
    EXPECT_EQ(askUrl("HEAD", site.external().url("/no-head")).status, 405);
    EXPECT_EQ(askUrl("GET", site.external().url("/no-head")).status, 200);
    EXPECT_EQ(WebTestSite::hits(site.external(), "/no-head", "HEAD"), 1);
    EXPECT_EQ(WebTestSite::hits(site.external(), "/no-head"), 2);
}
