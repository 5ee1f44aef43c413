// The web rules end to end: the command line crawls the WebTestSite (three loopback hosts)
// and its reports must hold exactly what the site's truth says; the classic rules on the same
// site report what they always did.
#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"
#include "support/WebTestSite.h"

#include "CsvParser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <set>
#include <thread>
#include <tuple>

namespace {

using Row = QMap<QString, QString>;

QString q(const std::string& s)
{
    return QString::fromStdString(s);
}

std::string s(const QString& q)
{
    return q.toStdString();
}

// The records of a CSV report as maps from its header's names.
QList<Row> csvRows(const CliResult& result)
{
    QString error;
    const QList<QStringList> records = CsvParser::parse(result.out, &error);
    EXPECT_TRUE(error.isEmpty()) << s(error) << "\n" << s(result.out);
    QList<Row> rows;
    if (records.isEmpty())
        return rows;
    const QStringList header = records.first();
    for (int i = 1; i < records.size(); ++i) {
        Row row;
        for (int c = 0; c < header.size() && c < records[i].size(); ++c)
            row[header[c]] = records[i][c];
        rows << row;
    }
    return rows;
}

QStringList headerOf(const CliResult& result)
{
    return result.out.section(QStringLiteral("\r\n"), 0, 0).split(QLatin1Char(','));
}

// A JSON value as text: 404 and "404" alike.
QString text(const QJsonValue& value)
{
    return value.isDouble() ? QString::number(value.toInteger()) : value.toString();
}

class WebRules : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.start());
        ASSERT_TRUE(dir.isValid());
    }

    // crawl-url of the test site with the web rules (and more options); the exit status.
    int crawlWeb(const QString& name, const QStringList& options = {})
    {
        const CliResult r = runCli(QStringList{"crawl-url", q(site.startUrl()), "--name", name, "--rules", "web"}
                                       + options,
                                   dir.path(), 180000);
        EXPECT_NE(r.exitCode, -1) << "the crawl did not end";
        EXPECT_EQ(r.exitCode, 0) << s(r.out) << s(r.err);
        return r.exitCode;
    }

    CliResult report(const QString& command, const QString& name, const QString& format = "csv")
    {
        const CliResult r = runCli({command, name, "--format", format}, dir.path());
        EXPECT_EQ(r.exitCode, 0) << s(command) << ": " << s(r.err);
        return r;
    }

    WebTestSite site;
    QTemporaryDir dir;
};

TEST_F(WebRules, BrokenReportsExactlyTheTruthInEveryFormat)
{
    crawlWeb("web");
    const WebSiteTruth& truth = site.truth();

    const CliResult shown = runCli({"show", "web"}, dir.path());
    EXPECT_TRUE(shown.out.contains(QRegularExpression("^Link rules: +web$", QRegularExpression::MultilineOption)))
        << s(shown.out);

    // CSV: one row per (target, linking page), the columns of the web rules.
    const CliResult csv = report("broken", "web");
    EXPECT_EQ(headerOf(csv), QStringList({"url", "status", "sourceUrl", "anchor", "kind", "tag"}));
    using Key = std::tuple<std::string, std::string, std::string, std::string, std::string>;
    std::set<Key> expected, got;
    for (const auto& b : truth.broken)
        expected.insert({b.url, b.status, b.sourceUrl, b.kind, b.tag});
    for (const Row& row : csvRows(csv)) {
        got.insert({s(row["url"]), s(row["status"]), s(row["sourceUrl"]), s(row["kind"]), s(row["tag"])});
        for (const auto& b : truth.broken)
            if (b.url == s(row["url"]) && !b.anchor.empty())
                EXPECT_EQ(s(row["anchor"]), b.anchor) << b.url;
    }
    EXPECT_EQ(got, expected);

    // Nothing of another scheme is ever broken or asked for.
    for (const std::string& link : truth.notChecked)
        EXPECT_FALSE(csv.out.contains(q(link))) << link;
    for (const HttpRequest& request : site.site().requests())
        for (const char* scheme : {"mailto", "tel:", "javascript", "ftp", "news:", "data:"})
            EXPECT_EQ(request.target.find(scheme), std::string::npos) << request.target;

    // Table: every broken URL with its status.
    const CliResult table = report("broken", "web", "table");
    for (const auto& b : truth.broken) {
        EXPECT_TRUE(table.out.contains(q(b.url))) << b.url << "\n" << s(table.out);
        EXPECT_TRUE(table.out.contains(q(b.status))) << b.status;
    }

    // JSON: one object per target, its linking pages inside.
    const CliResult json = report("broken", "web", "json");
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json.out.toUtf8(), &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError) << s(json.out);
    ASSERT_TRUE(document.isArray());
    std::set<std::string> targets, expectedTargets;
    for (const auto& b : truth.broken)
        expectedTargets.insert(b.url);
    for (const QJsonValue& value : document.array()) {
        const QJsonObject object = value.toObject();
        const std::string url = s(object["url"].toString());
        EXPECT_TRUE(targets.insert(url).second) << "two objects for " << url;
        const auto it = std::find_if(truth.broken.begin(), truth.broken.end(),
                                     [&](const auto& b) { return b.url == url; });
        if (it == truth.broken.end()) {
            ADD_FAILURE() << "not broken: " << url;
            continue;
        }
        EXPECT_EQ(s(object["kind"].toString()), it->kind) << url;
        if (it->status == "refused")
            EXPECT_TRUE(text(object["status"]) == "refused" || text(object["error"]) == "refused") << url;
        else
            EXPECT_EQ(s(text(object["status"])), it->status) << url;
        const QJsonArray from = object["linkedFrom"].toArray();
        ASSERT_EQ(from.size(), 1) << url;
        EXPECT_EQ(s(from[0].toObject()["url"].toString()), it->sourceUrl);
        EXPECT_EQ(s(from[0].toObject()["tag"].toString()), it->tag);
        EXPECT_TRUE(from[0].toObject().contains("attribute")) << url;
        if (!it->anchor.empty())
            EXPECT_EQ(s(from[0].toObject()["anchor"].toString()), it->anchor);
    }
    EXPECT_EQ(targets, expectedTargets);
}

TEST_F(WebRules, ExternalLinksGetTheirVerdictsAndAreAskedOnce)
{
    crawlWeb("web");
    const CliResult csv = report("external", "web");
    EXPECT_EQ(headerOf(csv), QStringList({"url", "status", "verdict", "sourceUrl", "anchor", "tag"}));
    const QList<Row> rows = csvRows(csv);
    for (const auto& e : site.truth().externals) {
        const auto it = std::find_if(rows.begin(), rows.end(), [&](const Row& row) {
            return s(row["url"]) == e.url && s(row["sourceUrl"]) == e.sourceUrl;
        });
        ASSERT_NE(it, rows.end()) << e.url << "\n" << s(csv.out);
        EXPECT_EQ(s((*it)["verdict"]), e.verdict) << e.url;
        if (!e.status.empty())
            EXPECT_EQ(s((*it)["status"]), e.status) << e.url;
        EXPECT_EQ(s((*it)["tag"]), "a");
    }
    // The same URL linked from two pages: one row for each, one check for both.
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(),
                            [&](const Row& row) { return s(row["url"]) == site.external().url("/ok.html"); }),
              2);
    EXPECT_EQ(WebTestSite::hits(site.external(), "/ok.html"), 1);
    // HEAD first, GET when HEAD fails: at most one of each for every URL.
    std::set<std::pair<std::string, std::string>> asked;
    for (const HttpRequest& request : site.external().requests())
        EXPECT_TRUE(asked.insert({request.method, request.path}).second)
            << request.method << " " << request.path << " asked twice";
    EXPECT_EQ(WebTestSite::hits(site.external(), "/no-head", "GET"), 1);
    // External links are checked, never crawled: the page behind /to-site is not read for links
    // from the external host, and robots.txt closes /private/ on 127.0.0.3.
    EXPECT_EQ(WebTestSite::hits(site.robotsHost(), "/private/closed.html"), 0);
    EXPECT_EQ(WebTestSite::hits(site.robotsHost(), "/robots.txt"), 1);
}

TEST_F(WebRules, BrokenFragmentsHaveTheirOwnReport)
{
    crawlWeb("web");
    const CliResult csv = report("fragments", "web");
    EXPECT_EQ(headerOf(csv), QStringList({"url", "fragment", "sourceUrl", "anchor", "tag"}));
    std::set<std::tuple<std::string, std::string, std::string>> expected, got;
    for (const auto& f : site.truth().fragments)
        expected.insert({f.url, f.fragment, f.sourceUrl});
    for (const Row& row : csvRows(csv))
        got.insert({s(row["url"]), s(row["fragment"]), s(row["sourceUrl"])});
    EXPECT_EQ(got, expected);
    // A broken fragment does not make its page broken.
    const CliResult broken = report("broken", "web");
    EXPECT_FALSE(broken.out.contains(q(site.site().url("/target.html")) + ","));
    EXPECT_FALSE(broken.out.contains(q(site.site().url("/fragments.html")) + ","));
    // JSON and table say the same.
    const CliResult json = report("fragments", "web", "json");
    const QJsonArray array = QJsonDocument::fromJson(json.out.toUtf8()).array();
    EXPECT_EQ(size_t(array.size()), expected.size()) << s(json.out);
    const CliResult table = report("fragments", "web", "table");
    for (const auto& f : site.truth().fragments)
        EXPECT_TRUE(table.out.contains(q(f.fragment))) << f.fragment;
}

TEST_F(WebRules, RobotsTxtIsHonouredAndEverySkipIsReportedWithItsRule)
{
    crawlWeb("web");
    const CliResult csv = report("robots", "web");
    EXPECT_EQ(headerOf(csv), QStringList({"url", "rule", "kind", "sourceUrl"}));
    std::set<std::tuple<std::string, std::string, std::string, std::string>> expected, got;
    for (const auto& r : site.truth().robots)
        expected.insert({r.url, r.rule, r.kind, r.sourceUrl});
    for (const Row& row : csvRows(csv))
        got.insert({s(row["url"]), s(row["rule"]), s(row["kind"]), s(row["sourceUrl"])});
    EXPECT_EQ(got, expected);
    // Not asked at all (the same path with a query is another URL, asked below).
    for (const std::string& path : site.truth().robotsClosedPaths)
        for (const HttpRequest& request : site.site().requests())
            EXPECT_NE(request.target, path);
    // The Quillmere group applies, not "*" (which closes everything); Allow wins a tie; "$"
    // leaves the URL with a query open.
    for (const char* path : {"/private/open.html", "/tie/page.html", "/kinds.html"})
        EXPECT_GE(WebTestSite::hits(site.site(), path), 1) << path;
    bool queried = false;
    for (const HttpRequest& request : site.site().requests())
        queried = queried || request.target == "/search.cgi?q=1";
    EXPECT_TRUE(queried);
}

// The home page names chapter.html in a <link rel=next> (a resource: checked, not crawled)
// before its <a>: the page is crawled all the same, and its broken link found.
TEST_F(WebRules, APageMetFirstThroughLinkRelNextIsStillCrawled)
{
    crawlWeb("web");
    EXPECT_GE(WebTestSite::hits(site.site(), "/chapter.html", "GET"), 1);
    const CliResult broken = report("broken", "web");
    EXPECT_TRUE(broken.out.contains(q(site.site().url("/chapter-missing.html")) + ",404," +
                                    q(site.site().url("/chapter.html"))))
        << s(broken.out);
}

// Nothing listens on the port: its robots.txt cannot be asked for either, and the link is
// broken ("refused"), not one robots.txt closed.
TEST_F(WebRules, ALinkToAPortWhereNothingListensIsBrokenNotClosedByRobots)
{
    crawlWeb("web");
    const std::string refused = site.refusedUrl("/refused.html");
    bool listed = false;
    for (const Row& row : csvRows(report("external", "web")))
        if (s(row["url"]) == refused) {
            listed = true;
            EXPECT_EQ(s(row["verdict"]), "broken");
            EXPECT_EQ(s(row["status"]), "refused");
        }
    EXPECT_TRUE(listed);
    EXPECT_TRUE(report("broken", "web").out.contains(q(refused) + ",refused,"));
    EXPECT_FALSE(report("robots", "web").out.contains(q(refused)));
}

TEST_F(WebRules, IgnoreRobotsAsksForWhatRobotsTxtCloses)
{
    crawlWeb("web", {"--ignore-robots"});
    for (const std::string& path : site.truth().robotsClosedPaths)
        EXPECT_GE(WebTestSite::hits(site.site(), path), 1) << path;
    EXPECT_GE(WebTestSite::hits(site.robotsHost(), "/private/closed.html"), 1);
    EXPECT_EQ(csvRows(report("robots", "web")).size(), 0);
}

TEST_F(WebRules, EveryLinkKindIsFollowedAndNothingElse)
{
    crawlWeb("web");
    // Every internal page and resource that exists was asked for (the page over 1 MiB read to
    // its end, the srcset URLs whole, <base href> obeyed), and nothing that does not exist
    // but the truth's broken URLs.
    for (const std::string& url : site.truth().okInternal) {
        const std::string target = url.substr(site.site().baseUrl().size());
        bool asked = false;
        for (const HttpRequest& request : site.site().requests())
            asked = asked || request.target == target || LocalHttpServer::percentDecode(request.target) == target;
        EXPECT_TRUE(asked) << target;
    }
    std::set<std::string> missing;
    for (const auto& b : site.truth().broken)
        if (b.url.rfind(site.site().baseUrl(), 0) == 0)
            missing.insert(b.url.substr(site.site().baseUrl().size()));
    std::set<std::string> known = {"/robots.txt"};
    for (const std::string& url : site.truth().okInternal)
        known.insert(LocalHttpServer::percentDecode(url.substr(site.site().baseUrl().size())));
    for (const HttpRequest& request : site.site().requests()) {
        const std::string target = LocalHttpServer::percentDecode(request.target);
        EXPECT_TRUE(known.count(target) || missing.count(target)) << "asked for " << request.target;
    }
    // Pages are read with GET; resources only checked.
    for (const std::string& url : site.truth().crawledPages)
        EXPECT_GE(WebTestSite::hits(site.site(), url.substr(site.site().baseUrl().size()), "GET"), 1) << url;
}

TEST_F(WebRules, NoExternalAsksNothingOfOtherHosts)
{
    crawlWeb("web", {"--no-external"});
    EXPECT_EQ(site.external().requestCount(), 0u);
    const QList<Row> rows = csvRows(report("external", "web"));
    for (const Row& row : rows)
        if (row["url"].startsWith(q(site.external().baseUrl())))
            EXPECT_EQ(s(row["verdict"]), "skipped") << s(row["url"]);
    for (const Row& row : csvRows(report("broken", "web")))
        EXPECT_NE(s(row["kind"]), "external") << s(row["url"]);
    // The site itself is crawled as before.
    EXPECT_GE(WebTestSite::hits(site.site(), "/big.html"), 1);
}

TEST_F(WebRules, IncludeAndExcludeChooseThePagesCrawled)
{
    // Excluded: the big page and everything under /private/ and /tie/.
    crawlWeb("exclude", {"--exclude", "big\\.html$", "--exclude", "/(private|tie)/"});
    EXPECT_EQ(WebTestSite::hits(site.site(), "/big.html"), 0);
    EXPECT_EQ(WebTestSite::hits(site.site(), "/after-big.html"), 0);
    EXPECT_EQ(WebTestSite::hits(site.site(), "/private/open.html"), 0);
    EXPECT_EQ(WebTestSite::hits(site.site(), "/tie/page.html"), 0);
    EXPECT_GE(WebTestSite::hits(site.site(), "/kinds.html"), 1);
    const CliResult broken = report("broken", "exclude");
    EXPECT_FALSE(broken.out.contains("big-missing.html"));
    EXPECT_TRUE(broken.out.contains("missing-page.html"));

    // Included: the start page, the fragments page and what it links to, nothing else crawled.
    site.site().clearRequests();
    crawlWeb("include", {"--include", "/$", "--include", "/(fragments|target)\\.html$"});
    EXPECT_GE(WebTestSite::hits(site.site(), "/fragments.html"), 1);
    EXPECT_GE(WebTestSite::hits(site.site(), "/target.html"), 1);
    for (const char* path : {"/kinds.html", "/big.html", "/robots.html", "/schemes.html"})
        EXPECT_EQ(WebTestSite::hits(site.site(), path, "GET"), 0) << path;
    std::set<std::string> fragments;
    for (const Row& row : csvRows(report("fragments", "include")))
        fragments.insert(s(row["fragment"]));
    EXPECT_EQ(fragments, (std::set<std::string>{"absent", "local-missing"}));
}

TEST_F(WebRules, UserAgentAndHeadersReachEveryServer)
{
    crawlWeb("web", {"--user-agent", "WebRulesTest/2.0 (+http://127.0.0.1/bot)", "--header", "X-Audit: yes",
                     "--header", "Accept-Language: fr"});
    size_t seen = 0;
    for (const LocalHttpServer* server : {&site.site(), &site.external(), &site.robotsHost()})
        for (const HttpRequest& request : server->requests()) {
            ++seen;
            EXPECT_EQ(request.header("User-Agent"), "WebRulesTest/2.0 (+http://127.0.0.1/bot)") << request.target;
            EXPECT_EQ(request.header("X-Audit"), "yes") << request.target;
            EXPECT_EQ(request.header("Accept-Language"), "fr") << request.target;
        }
    EXPECT_GT(seen, 20u);
}

TEST_F(WebRules, MaxPageSizeStopsReadingPastIt)
{
    crawlWeb("small", {"--max-page-size", "1000000"});
    EXPECT_EQ(WebTestSite::hits(site.site(), "/after-big.html"), 0);
    const CliResult broken = report("broken", "small");
    EXPECT_FALSE(broken.out.contains("big-missing.html"));
    EXPECT_TRUE(broken.out.contains("missing-page.html"));
}

TEST_F(WebRules, FailOnBrokenExitsFourForBrokenExternalLinksToo)
{
    // A site whose only trouble is a broken external link.
    LocalHttpServer home;
    LocalHttpServer other("127.0.0.2");
    ASSERT_TRUE(home.start());
    ASSERT_TRUE(other.start());
    other.setPage("/gone", "<p>gone</p>", "text/html", 404);
    other.setPage("/wall", "<p>wall</p>", "text/html", 403);
    home.setPage("/", "<html><head><title>H</title></head><body><p id=\"here\">x</p>"
                      "<a href=\"#nowhere\">Missing fragment</a> <a href=\"" + other.url("/wall") + "\">Wall</a>"
                      "</body></html>");
    ASSERT_EQ(runCli({"new", "gate", q(home.url("/")), "--rules", "web"}, dir.path()).exitCode, 0);
    // A blocked link and a missing fragment are not broken.
    CliResult r = runCli({"crawl", "gate", "--fail-on-broken"}, dir.path(), 120000);
    EXPECT_EQ(r.exitCode, 0) << s(r.out) << s(r.err);
    home.setPage("/", "<html><head><title>H</title></head><body><a href=\"" + other.url("/gone") +
                          "\">Gone</a></body></html>");
    r = runCli({"crawl", "gate", "--restart", "--fail-on-broken"}, dir.path(), 120000);
    EXPECT_EQ(r.exitCode, 4) << s(r.out) << s(r.err);
    // The site's own broken links, as ever.
    r = runCli({"crawl-url", q(site.startUrl()), "--name", "whole", "--rules", "web", "--no-external"}, dir.path(),
               180000);
    EXPECT_EQ(r.exitCode, 0) << s(r.err);
    r = runCli({"crawl", "whole", "--restart", "--no-external", "--fail-on-broken"}, dir.path(), 180000);
    EXPECT_EQ(r.exitCode, 4) << s(r.out) << s(r.err);
}

TEST_F(WebRules, AtMostTwoRequestsInFlightPerExternalHost)
{
    LocalHttpServer home;
    LocalHttpServer slow("127.0.0.2");
    ASSERT_TRUE(home.start());
    ASSERT_TRUE(slow.start());
    std::atomic<int> inFlight{0}, most{0};
    std::string links;
    for (int i = 0; i < 8; ++i) {
        const std::string path = "/slow" + std::to_string(i);
        slow.route(path, [&](const HttpRequest&, HttpResponse& response) {
            const int now = ++inFlight;
            int seen = most;
            while (now > seen && !most.compare_exchange_weak(seen, now)) {
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(250));
            --inFlight;
            response.setContent("<p>slow</p>", "text/html");
        });
        links += "<a href=\"" + slow.url(path) + "\">S" + std::to_string(i) + "</a> ";
    }
    home.setPage("/", "<html><head><title>H</title></head><body>" + links + "</body></html>");
    CliResult r = runCli({"crawl-url", q(home.url("/")), "--name", "slow", "--rules", "web"}, dir.path(), 120000);
    ASSERT_EQ(r.exitCode, 0) << s(r.err);
    EXPECT_EQ(WebTestSite::hits(slow, "/slow7"), 1);
    EXPECT_EQ(most.load(), 2);

    // --per-host 1: one at a time.
    most = 0;
    slow.clearRequests();
    r = runCli({"crawl-url", q(home.url("/")), "--name", "one", "--rules", "web", "--per-host", "1"}, dir.path(),
               120000);
    ASSERT_EQ(r.exitCode, 0) << s(r.err);
    EXPECT_EQ(WebTestSite::hits(slow, "/slow7"), 1);
    EXPECT_EQ(most.load(), 1);
}

TEST_F(WebRules, ClassicProjectsRefuseWebOptions)
{
    ASSERT_EQ(runCli({"new", "old", q(site.startUrl())}, dir.path()).exitCode, 0);
    for (const QStringList& options :
         {QStringList{"--no-external"}, QStringList{"--ignore-robots"}, QStringList{"--include", "x"},
          QStringList{"--exclude", "x"}, QStringList{"--user-agent", "U"}, QStringList{"--header", "N: v"},
          QStringList{"--max-page-size", "1000"}, QStringList{"--external-timeout", "5"},
          QStringList{"--per-host", "1"}}) {
        const CliResult r = runCli(QStringList{"crawl", "old"} + options, dir.path());
        EXPECT_EQ(r.exitCode, 2) << s(options.join(' ')) << s(r.err);
    }
    EXPECT_EQ(site.site().requestCount(), 0u);
}

// The classic rules read the same site as they always have: blanks kept in hrefs, <base href>
// ignored, other schemes taken for paths, the page over 1 MiB not read. Kept here to the
// letter, ports replaced by names.
TEST_F(WebRules, ClassicRulesReportAsBefore)
{
    const CliResult crawl = runCli({"crawl-url", q(site.startUrl()), "--name", "old"}, dir.path(), 180000);
    ASSERT_EQ(crawl.exitCode, 0) << s(crawl.err);
    EXPECT_TRUE(crawl.out.contains("Broken links:   10 (to 10 URLs)")) << s(crawl.out);
    // Six of them come from links a browser reads otherwise (a scheme read as a folder, a
    // leading blank): the report says so, and points to the web rules.
    const QString hint = "6 of the broken URLs come from links the classic rules read unlike a browser";
    EXPECT_TRUE(crawl.out.contains(hint)) << s(crawl.out);
    const CliResult shown = runCli({"show", "old"}, dir.path());
    EXPECT_TRUE(shown.out.contains(QRegularExpression("^Link rules: +classic$", QRegularExpression::MultilineOption)))
        << s(shown.out);
    CliResult csv = runCli({"broken", "old", "--format", "csv"}, dir.path());
    ASSERT_EQ(csv.exitCode, 0);
    EXPECT_TRUE(csv.err.contains(hint)) << s(csv.err);
    QString out = csv.out;
    out.replace(q(site.site().baseUrl()), "SITE");
    out.replace(q(site.refusedUrl("")).mid(7), "REFUSED");
    EXPECT_EQ(s(out),
              "url,status,sourceUrl,anchor\r\n"
              "SITE/\texternal.html,404,SITE/,External\r\n"
              "\"SITE/  kinds.html\n\",404,SITE/,Every kind\r\n"
              "SITE/base/target.html,404,SITE/base/page.html,Based target\r\n"
              "SITE/chapter-missing.html,404,SITE/chapter.html,Chapter missing\r\n"
              "\"SITE/data:text/plain;base64,SGk=\",404,SITE/schemes.html,Data\r\n"
              "SITE/ftp:/REFUSED/file.txt,404,SITE/schemes.html,FTP\r\n"
              "SITE/missing-page.html,404,SITE/,Missing page\r\n"
              "SITE/news:comp.lang.c,404,SITE/schemes.html,News\r\n"
              "\"SITE/redi\nrects.html\",404,SITE/,Redirects\r\n"
              "SITE/tel:+15555550100,404,SITE/schemes.html,Phone\r\n");
    // Nothing of another host is asked for by the classic rules.
    EXPECT_EQ(site.external().requestCount(), 0u);
    EXPECT_EQ(site.robotsHost().requestCount(), 0u);
}

} // namespace
