#include "html/RobotsPolicy.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

const QString kToken = QStringLiteral("Quillmere");

RobotsPolicy rulesFor(const QByteArray& body, const QString& token = kToken)
{
    return RobotsPolicy::parse(body, token);
}

RobotsPolicy::Verdict verdict(const RobotsPolicy& policy, const char* pathAndQuery)
{
    return policy.check(QUrl(QStringLiteral("https://example.com") + QString::fromUtf8(pathAndQuery)));
}

bool allowed(const RobotsPolicy& policy, const char* pathAndQuery)
{
    return verdict(policy, pathAndQuery).allowed;
}

// Every path of `yes` matched by the one Disallow rule, none of `no`.
void expectMatches(const char* pattern, std::initializer_list<const char*> yes, std::initializer_list<const char*> no)
{
    const RobotsPolicy policy = rulesFor(QByteArray("User-agent: *\nDisallow: ") + pattern + "\n");
    ASSERT_EQ(policy.ruleCount(), 1) << pattern;
    for (const char* path : yes)
        EXPECT_FALSE(allowed(policy, path)) << pattern << " should match " << path;
    for (const char* path : no)
        EXPECT_TRUE(allowed(policy, path)) << pattern << " should not match " << path;
}

const char* const kRfcExample = "User-Agent: *\n"
                                "Disallow: *.gif$\n"
                                "Disallow: /example/\n"
                                "Allow: /publications/\n"
                                "\n"
                                "User-Agent: foobot\n"
                                "Disallow:/\n"
                                "Allow:/example/page.html\n"
                                "Allow:/example/allowed.gif\n"
                                "\n"
                                "User-Agent: barbot\n"
                                "User-Agent: bazbot\n"
                                "Disallow: /example/page.html\n"
                                "\n"
                                "User-Agent: quxbot\n"
                                "\n"
                                "EOF\n";

TEST(RobotsPolicyTest, RfcExampleFoobotKeepsOnlyItsAllowedPages)
{
    const RobotsPolicy policy = rulesFor(kRfcExample, QStringLiteral("foobot"));
    EXPECT_EQ(policy.ruleCount(), 3);
    EXPECT_TRUE(allowed(policy, "/example/page.html"));
    EXPECT_TRUE(allowed(policy, "/example/allowed.gif"));
    EXPECT_FALSE(allowed(policy, "/example/other.html"));
    EXPECT_FALSE(allowed(policy, "/publications/"));
    EXPECT_FALSE(allowed(policy, "/"));
    EXPECT_EQ(verdict(policy, "/elsewhere").rule, QStringLiteral("Disallow: /"));
}

TEST(RobotsPolicyTest, RfcExampleGroupWithTwoAgentsServesBoth)
{
    for (const char* token : {"barbot", "bazbot", "BazBot"}) {
        const RobotsPolicy policy = rulesFor(kRfcExample, QString::fromLatin1(token));
        EXPECT_EQ(policy.ruleCount(), 1) << token;
        EXPECT_FALSE(allowed(policy, "/example/page.html")) << token;
        EXPECT_TRUE(allowed(policy, "/example/other.html")) << token;
        EXPECT_TRUE(allowed(policy, "/picture.gif")) << token;
    }
}

TEST(RobotsPolicyTest, RfcExampleGroupWithoutRulesAllowsEverythingAndHidesTheStarGroup)
{
    const RobotsPolicy policy = rulesFor(kRfcExample, QStringLiteral("quxbot"));
    EXPECT_EQ(policy.ruleCount(), 0);
    EXPECT_TRUE(allowed(policy, "/example/"));
    EXPECT_TRUE(allowed(policy, "/picture.gif"));
}

TEST(RobotsPolicyTest, RfcExampleOtherCrawlersTakeTheStarGroup)
{
    const RobotsPolicy policy = rulesFor(kRfcExample);
    EXPECT_EQ(policy.ruleCount(), 3);
    EXPECT_FALSE(allowed(policy, "/picture.gif"));
    EXPECT_FALSE(allowed(policy, "/images/picture.gif"));
    EXPECT_TRUE(allowed(policy, "/picture.gif?size=2"));
    EXPECT_FALSE(allowed(policy, "/example/"));
    EXPECT_FALSE(allowed(policy, "/example/page.html"));
    EXPECT_TRUE(allowed(policy, "/publications/"));
    EXPECT_TRUE(allowed(policy, "/publications/list.html"));
    EXPECT_TRUE(allowed(policy, "/"));
    EXPECT_EQ(verdict(policy, "/example/x").rule, QStringLiteral("Disallow: /example/"));
    EXPECT_EQ(verdict(policy, "/a.gif").rule, QStringLiteral("Disallow: *.gif$"));
}

TEST(RobotsPolicyTest, RfcLongestMatchExample)
{
    const RobotsPolicy policy = rulesFor("User-Agent: Quillmere\n"
                                         "Allow: /example/page/\n"
                                         "Disallow: /example/page/disallowed.gif\n");
    EXPECT_FALSE(allowed(policy, "/example/page/disallowed.gif"));
    EXPECT_TRUE(allowed(policy, "/example/page/allowed.gif"));
    EXPECT_EQ(verdict(policy, "/example/page/disallowed.gif").rule,
              QStringLiteral("Disallow: /example/page/disallowed.gif"));
    EXPECT_EQ(verdict(policy, "/example/page/x").rule, QStringLiteral("Allow: /example/page/"));
}

TEST(RobotsPolicyTest, PatternTableRootAndStar)
{
    expectMatches("/", {"/", "/fish", "/a/b?c"}, {});
    expectMatches("/*", {"/", "/fish", "/a/b?c"}, {});
    expectMatches("/$", {"/"}, {"/fish", "/?a=b"});
}

TEST(RobotsPolicyTest, PatternTableFish)
{
    const auto yes = {"/fish", "/fish.html", "/fish/salmon.html", "/fishheads", "/fishheads/yummy.html",
                      "/fish.php?id=anything"};
    const auto no = {"/Fish.asp", "/catfish", "/?id=fish", "/desert/fish"};
    expectMatches("/fish", yes, no);
    expectMatches("/fish*", yes, no);
}

TEST(RobotsPolicyTest, PatternTableFishSlash)
{
    expectMatches("/fish/", {"/fish/", "/fish/?id=anything", "/fish/salmon.htm"},
                  {"/fish", "/fish.html", "/animals/fish/", "/Fish/Salmon.asp"});
}

TEST(RobotsPolicyTest, PatternTableStarPhp)
{
    expectMatches("/*.php",
                  {"/index.php", "/filename.php", "/folder/filename.php", "/folder/filename.php?parameters",
                   "/folder/any.php.file.html", "/filename.php/"},
                  {"/", "/windows.PHP"});
}

TEST(RobotsPolicyTest, PatternTableStarPhpDollar)
{
    expectMatches("/*.php$", {"/filename.php", "/folder/filename.php"},
                  {"/filename.php?parameters", "/filename.php/", "/filename.php5", "/windows.PHP"});
}

TEST(RobotsPolicyTest, PatternTableFishStarPhp)
{
    expectMatches("/fish*.php", {"/fish.php", "/fishheads/catfish.php?parameters"}, {"/Fish.PHP", "/fish.html"});
}

TEST(RobotsPolicyTest, DollarInsideAPatternIsLiteral)
{
    expectMatches("/a$b", {"/a$b", "/a$bc", "/a%24b"}, {"/a", "/ab", "/a$"});
    expectMatches("/path/foo-%24", {"/path/foo-$"}, {"/path/foo-"});
}

TEST(RobotsPolicyTest, EscapedStarMatchesALiteralStar)
{
    expectMatches("/path/file-with-a-%2A.html", {"/path/file-with-a-*.html", "/path/file-with-a-%2a.html"},
                  {"/path/file-with-a-x.html", "/path/file-with-a-.html"});
}

TEST(RobotsPolicyTest, ProductTokenMatchesCaseInsensitively)
{
    const QByteArray body = "User-agent: *\nDisallow: /star\n\nUser-agent: quillmere\nDisallow: /ours\n";
    const RobotsPolicy policy = rulesFor(body);
    EXPECT_FALSE(allowed(policy, "/ours"));
    EXPECT_TRUE(allowed(policy, "/star"));
    EXPECT_FALSE(allowed(rulesFor("User-agent: QUILLMERE\nDisallow: /ours\n"), "/ours"));
}

TEST(RobotsPolicyTest, ProductTokenIsTheValuesLeadingName)
{
    // The value names a crawler by its letters, "-" and "_": a version after them is not
    // part of the name.
    EXPECT_FALSE(allowed(rulesFor("User-agent: Quillmere/2.0\nDisallow: /ours\n"), "/ours"));
    EXPECT_FALSE(allowed(rulesFor("User-agent: Quillmere (desktop)\nDisallow: /ours\n"), "/ours"));
}

TEST(RobotsPolicyTest, LongerOrOtherNamesDoNotMatchTheProductToken)
{
    for (const char* agent : {"Quillmerebot", "quillmere-bot", "quillmere_x", "Quill", "xQuillmere"}) {
        const QByteArray body =
            QByteArray("User-agent: ") + agent + "\nDisallow: /theirs\n\nUser-agent: *\nDisallow: /star\n";
        const RobotsPolicy policy = rulesFor(body);
        EXPECT_TRUE(allowed(policy, "/theirs")) << agent;
        EXPECT_FALSE(allowed(policy, "/star")) << agent;
    }
}

TEST(RobotsPolicyTest, NoMatchingGroupAndNoStarGroupMeansNoRules)
{
    const RobotsPolicy policy = rulesFor("User-agent: otherbot\nDisallow: /\n");
    EXPECT_EQ(policy.ruleCount(), 0);
    EXPECT_TRUE(allowed(policy, "/anything"));
}

TEST(RobotsPolicyTest, GroupsNamingTheCrawlerAreMerged)
{
    const RobotsPolicy policy = rulesFor("User-agent: Quillmere\nDisallow: /one\n\n"
                                         "User-agent: *\nDisallow: /star\n\n"
                                         "User-agent: quillmere\nDisallow: /two\n");
    EXPECT_EQ(policy.ruleCount(), 2);
    EXPECT_FALSE(allowed(policy, "/one"));
    EXPECT_FALSE(allowed(policy, "/two"));
    EXPECT_TRUE(allowed(policy, "/star"));
}

TEST(RobotsPolicyTest, StarGroupsAreMerged)
{
    const RobotsPolicy policy = rulesFor("User-agent: *\nDisallow: /one\n\n"
                                         "User-agent: otherbot\nDisallow: /other\n\n"
                                         "User-agent: *\nDisallow: /two\n");
    EXPECT_EQ(policy.ruleCount(), 2);
    EXPECT_FALSE(allowed(policy, "/one"));
    EXPECT_FALSE(allowed(policy, "/two"));
    EXPECT_TRUE(allowed(policy, "/other"));
}

TEST(RobotsPolicyTest, RulesBeforeAnyUserAgentAreIgnored)
{
    const RobotsPolicy policy = rulesFor("Disallow: /early\nAllow: /x\nUser-agent: *\nDisallow: /late\n");
    EXPECT_EQ(policy.ruleCount(), 1);
    EXPECT_TRUE(allowed(policy, "/early"));
    EXPECT_FALSE(allowed(policy, "/late"));
}

TEST(RobotsPolicyTest, UserAgentAfterRulesStartsANewGroup)
{
    const RobotsPolicy policy = rulesFor("User-agent: otherbot\nDisallow: /other\n"
                                         "User-agent: Quillmere\nDisallow: /ours\n");
    EXPECT_EQ(policy.ruleCount(), 1);
    EXPECT_TRUE(allowed(policy, "/other"));
    EXPECT_FALSE(allowed(policy, "/ours"));
}

TEST(RobotsPolicyTest, OtherLinesNeitherEndNorStartAGroup)
{
    const RobotsPolicy policy = rulesFor("Sitemap: https://example.com/sitemap.xml\n"
                                         "User-agent: otherbot\n"
                                         "Crawl-delay: 5\n"
                                         "User-agent: Quillmere\n"
                                         "Sitemap: https://example.com/other.xml\n"
                                         "Disallow: /one\n"
                                         "Crawl-delay: 10\n"
                                         "Request-rate: 1/5\n"
                                         "Disallow: /two\n"
                                         "not a rule at all\n");
    EXPECT_EQ(policy.ruleCount(), 2);
    EXPECT_FALSE(allowed(policy, "/one"));
    EXPECT_FALSE(allowed(policy, "/two"));
    EXPECT_FALSE(allowed(rulesFor("User-agent: otherbot\nCrawl-delay: 5\nUser-agent: Quillmere\nDisallow: /x\n"), "/x"));
}

TEST(RobotsPolicyTest, CommentsAreCut)
{
    const RobotsPolicy policy = rulesFor("# User-agent: Quillmere\n"
                                         "User-agent: * # everyone\n"
                                         "Disallow: /private # keep out\n"
                                         "#Disallow: /commented\n"
                                         "Disallow: /a#b\n");
    EXPECT_EQ(policy.ruleCount(), 2);
    EXPECT_FALSE(allowed(policy, "/private"));
    EXPECT_EQ(verdict(policy, "/private/x").rule, QStringLiteral("Disallow: /private"));
    EXPECT_TRUE(allowed(policy, "/commented"));
    EXPECT_FALSE(allowed(policy, "/a"));
}

TEST(RobotsPolicyTest, LinesEndAtCrLfOrCrLf)
{
    for (const char* end : {"\n", "\r\n", "\r"}) {
        const QByteArray body = QByteArray("User-agent: *") + end + "Disallow: /one" + end + "Allow: /one/open" + end
            + end + "User-agent: otherbot" + end + "Disallow: /two" + end;
        const RobotsPolicy policy = rulesFor(body);
        EXPECT_EQ(policy.ruleCount(), 2) << int(end[0]) << int(end[1]);
        EXPECT_FALSE(allowed(policy, "/one"));
        EXPECT_TRUE(allowed(policy, "/one/open"));
        EXPECT_TRUE(allowed(policy, "/two"));
    }
}

TEST(RobotsPolicyTest, KeysAreCaseInsensitiveAndBlanksAroundColonAndValueIgnored)
{
    const RobotsPolicy policy = rulesFor("  USER-AGENT \t:\t quillMERE  \n"
                                         "DISALLOW   :   /x  \n"
                                         "\tallow:/x/y\t\n"
                                         "dIsAlLoW:/z\n");
    EXPECT_EQ(policy.ruleCount(), 3);
    EXPECT_FALSE(allowed(policy, "/x"));
    EXPECT_TRUE(allowed(policy, "/x/y"));
    EXPECT_FALSE(allowed(policy, "/z"));
    EXPECT_EQ(verdict(policy, "/x").rule, QStringLiteral("Disallow: /x"));
    EXPECT_EQ(verdict(policy, "/x/y").rule, QStringLiteral("Allow: /x/y"));
}

TEST(RobotsPolicyTest, ByteOrderMarkAtTheStartIsSkipped)
{
    const RobotsPolicy policy = rulesFor("\xEF\xBB\xBFUser-agent: *\nDisallow: /x\n");
    EXPECT_EQ(policy.ruleCount(), 1);
    EXPECT_FALSE(allowed(policy, "/x"));
}

TEST(RobotsPolicyTest, EmptyDisallowIsNoRule)
{
    const RobotsPolicy open = rulesFor("User-agent: *\nDisallow:\n");
    EXPECT_EQ(open.ruleCount(), 0);
    EXPECT_TRUE(allowed(open, "/"));
    EXPECT_TRUE(allowed(open, "/anything"));
    // It still names the crawler's group, which then hides the "*" group.
    const RobotsPolicy ours = rulesFor("User-agent: Quillmere\nDisallow:\n\nUser-agent: *\nDisallow: /\n");
    EXPECT_EQ(ours.ruleCount(), 0);
    EXPECT_TRUE(allowed(ours, "/anything"));
}

TEST(RobotsPolicyTest, LongestMatchWinsByWrittenLength)
{
    const RobotsPolicy shortAllow = rulesFor("User-agent: *\nAllow: /p\nDisallow: /\n");
    EXPECT_TRUE(allowed(shortAllow, "/page"));
    EXPECT_FALSE(allowed(shortAllow, "/other"));
    const RobotsPolicy wildcardLonger = rulesFor("User-agent: *\nAllow: /page\nDisallow: /*.htm\n");
    EXPECT_FALSE(allowed(wildcardLonger, "/page.htm"));
    EXPECT_EQ(verdict(wildcardLonger, "/page.htm").rule, QStringLiteral("Disallow: /*.htm"));
    const RobotsPolicy rootOnly = rulesFor("User-agent: *\nAllow: /$\nDisallow: /\n");
    EXPECT_TRUE(allowed(rootOnly, "/"));
    EXPECT_FALSE(allowed(rootOnly, "/page.htm"));
}

TEST(RobotsPolicyTest, AllowWinsATie)
{
    for (const char* body : {"User-agent: *\nAllow: /folder\nDisallow: /folder\n",
                             "User-agent: *\nDisallow: /folder\nAllow: /folder\n"}) {
        const RobotsPolicy policy = rulesFor(body);
        EXPECT_TRUE(allowed(policy, "/folder/page"));
        EXPECT_EQ(verdict(policy, "/folder/page").rule, QStringLiteral("Allow: /folder"));
    }
    const RobotsPolicy sameLength = rulesFor("User-agent: *\nDisallow: /*.ph\nAllow: /page\n");
    EXPECT_TRUE(allowed(sameLength, "/page.php"));
    EXPECT_EQ(verdict(sameLength, "/page.php").rule, QStringLiteral("Allow: /page"));
}

TEST(RobotsPolicyTest, PercentEscapesAreComparedNormalised)
{
    // Non-ASCII written as it is or escaped, in either case of hex.
    expectMatches("/café", {"/caf%C3%A9", "/caf%c3%a9", "/café", "/café/menu"}, {"/cafe", "/caf%C3"});
    expectMatches("/caf%C3%A9", {"/café", "/caf%c3%a9"}, {"/cafe"});
    expectMatches("/caf%c3%a9", {"/café", "/caf%C3%A9"}, {"/cafe"});
    // Escapes of unreserved characters are the characters.
    expectMatches("/foo/bar/%62%61%7A", {"/foo/bar/baz"}, {"/foo/bar/ba"});
    expectMatches("/foo/bar/baz", {"/foo/bar/%62%61%7A", "/foo/bar/%62az"}, {});
    expectMatches("/%7Euser", {"/~user"}, {"/user"});
    expectMatches("/foo/bar/\xE3\x83\x84", {"/foo/bar/%E3%83%84", "/foo/bar/\xE3\x83\x84"}, {"/foo/bar/"});
    // Escapes of reserved characters are not.
    expectMatches("/a%2Fb", {"/a%2fb", "/a%2Fb"}, {"/a/b"});
    expectMatches("/a/b", {"/a/b"}, {"/a%2Fb"});
}

TEST(RobotsPolicyTest, TheQueryIsPartOfThePath)
{
    expectMatches("/search?q=", {"/search?q=", "/search?q=fish"}, {"/search", "/search?x=1&q=fish"});
    expectMatches("/*?", {"/page?", "/page?a=1", "/?x"}, {"/page"});
    expectMatches("/*&sort=", {"/list?a=1&sort=name"}, {"/list?sort=name"});
}

TEST(RobotsPolicyTest, AnEmptyPathIsTheRoot)
{
    const RobotsPolicy policy = rulesFor("User-agent: *\nDisallow: /$\n");
    EXPECT_FALSE(policy.check(QUrl(QStringLiteral("https://example.com"))).allowed);
    EXPECT_FALSE(policy.check(QUrl(QStringLiteral("https://example.com/"))).allowed);
    EXPECT_TRUE(policy.check(QUrl(QStringLiteral("https://example.com/a"))).allowed);
    const RobotsPolicy query = rulesFor("User-agent: *\nDisallow: /?\n");
    EXPECT_TRUE(query.check(QUrl(QStringLiteral("https://example.com"))).allowed);
    EXPECT_FALSE(query.check(QUrl(QStringLiteral("https://example.com?x=1"))).allowed);
}

TEST(RobotsPolicyTest, RobotsTxtIsAlwaysAllowed)
{
    const RobotsPolicy everything = rulesFor("User-agent: *\nDisallow: /\nDisallow: /robots.txt\n");
    EXPECT_FALSE(allowed(everything, "/other"));
    const RobotsPolicy::Verdict robots = verdict(everything, "/robots.txt");
    EXPECT_TRUE(robots.allowed);
    EXPECT_EQ(robots.rule, QString());
    EXPECT_TRUE(allowed(RobotsPolicy::disallowAll(QStringLiteral("robots.txt answered 500")), "/robots.txt"));
    EXPECT_TRUE(allowed(RobotsPolicy::fromAnswer(503, {}, kToken), "/robots.txt"));
}

TEST(RobotsPolicyTest, InvalidUtf8IsToleratedAndMatchedByItsBytes)
{
    const RobotsPolicy policy = rulesFor("User-agent: \xFF\xFEQuillmere\nDisallow: /\xC3\n\n"
                                         "User-agent: *\nDisallow: /a\xFF" "b\nDisallow: /\xE2\x82\n");
    EXPECT_EQ(policy.ruleCount(), 2);
    EXPECT_FALSE(allowed(policy, "/a%FFb"));
    EXPECT_FALSE(allowed(policy, "/a%ffb/c"));
    EXPECT_FALSE(allowed(policy, "/%E2%82%AC"));
    EXPECT_FALSE(allowed(policy, "/\xE2\x82\xAC"));
    EXPECT_TRUE(allowed(policy, "/ab"));
    EXPECT_TRUE(allowed(policy, "/%C3%A9"));
    EXPECT_TRUE(verdict(policy, "/a%FFb").rule.startsWith(QStringLiteral("Disallow: /a")));
}

// A body of `size` bytes: a "*" group whose last line is `lastLine`, filled before it with
// comment lines.
QByteArray bodyEndingWith(qsizetype size, const QByteArray& lastLine)
{
    QByteArray body = "User-agent: *\nDisallow: /early\n";
    const QByteArray filler = "# " + QByteArray(97, 'x') + "\n";
    while (body.size() + filler.size() + lastLine.size() + 2 <= size)
        body += filler;
    body += "#" + QByteArray(size - body.size() - lastLine.size() - 2, 'y') + "\n";
    body += lastLine;
    EXPECT_EQ(body.size(), size);
    return body;
}

TEST(RobotsPolicyTest, OnlyTheFirst500KiBAreRead)
{
    const qsizetype limit = 512000;
    // A rule ending on the last byte read, its line end just after it, is read.
    const RobotsPolicy whole = rulesFor(bodyEndingWith(limit, "Disallow: /last") + "\nDisallow: /beyond\n");
    EXPECT_EQ(whole.ruleCount(), 2);
    EXPECT_FALSE(allowed(whole, "/early"));
    EXPECT_FALSE(allowed(whole, "/last"));
    EXPECT_TRUE(allowed(whole, "/beyond"));
    // A rule cut by the limit is not read as the shorter one it would become.
    const RobotsPolicy cut = rulesFor(bodyEndingWith(limit, "Disallow: /pri") + "vate\n");
    EXPECT_EQ(cut.ruleCount(), 1);
    EXPECT_TRUE(allowed(cut, "/pri"));
    EXPECT_TRUE(allowed(cut, "/private"));
    EXPECT_FALSE(allowed(cut, "/early"));
    // Without the limit the same lines would count.
    const RobotsPolicy small = rulesFor("User-agent: *\nDisallow: /early\nDisallow: /private\n");
    EXPECT_FALSE(allowed(small, "/private"));
}

TEST(RobotsPolicyTest, FromAnswerParsesSuccess)
{
    const QByteArray body = "User-agent: *\nDisallow: /private\n";
    for (int status : {200, 203, 206}) {
        const RobotsPolicy policy = RobotsPolicy::fromAnswer(status, body, kToken);
        EXPECT_EQ(policy.ruleCount(), 1) << status;
        EXPECT_FALSE(policy.disallowsEverything()) << status;
        EXPECT_FALSE(allowed(policy, "/private")) << status;
        EXPECT_TRUE(allowed(policy, "/public")) << status;
    }
}

TEST(RobotsPolicyTest, FromAnswerClientErrorsAllowEverything)
{
    // Even 401 and 403: the file is unavailable, not a refusal.
    const QByteArray body = "User-agent: *\nDisallow: /\n";
    for (int status : {400, 401, 403, 404, 410, 429, 451}) {
        const RobotsPolicy policy = RobotsPolicy::fromAnswer(status, body, kToken);
        EXPECT_EQ(policy.ruleCount(), 0) << status;
        EXPECT_FALSE(policy.disallowsEverything()) << status;
        const RobotsPolicy::Verdict v = verdict(policy, "/anything");
        EXPECT_TRUE(v.allowed) << status;
        EXPECT_EQ(v.rule, QString()) << status;
    }
}

TEST(RobotsPolicyTest, FromAnswerServerErrorsDisallowEverything)
{
    const QByteArray body = "User-agent: *\nAllow: /\n";
    for (int status : {500, 502, 503, 504}) {
        const RobotsPolicy policy = RobotsPolicy::fromAnswer(status, body, kToken);
        const QString why = QStringLiteral("robots.txt answered %1").arg(status);
        EXPECT_TRUE(policy.disallowsEverything()) << status;
        EXPECT_EQ(policy.why(), why);
        const RobotsPolicy::Verdict v = verdict(policy, "/");
        EXPECT_FALSE(v.allowed) << status;
        EXPECT_EQ(v.rule, why);
        EXPECT_FALSE(allowed(policy, "/page?x=1")) << status;
    }
}

TEST(RobotsPolicyTest, FromAnswerWithoutAnswerDisallowsEverything)
{
    const RobotsPolicy policy = RobotsPolicy::fromAnswer(0, {}, kToken);
    EXPECT_TRUE(policy.disallowsEverything());
    const RobotsPolicy::Verdict v = verdict(policy, "/page");
    EXPECT_FALSE(v.allowed);
    EXPECT_EQ(v.rule, QStringLiteral("robots.txt could not be fetched"));
    EXPECT_EQ(policy.why(), QStringLiteral("robots.txt could not be fetched"));
}

TEST(RobotsPolicyTest, FromAnswerRedirectStillStandingAllowsEverything)
{
    for (int status : {300, 301, 302, 307, 308}) {
        const RobotsPolicy policy = RobotsPolicy::fromAnswer(status, "User-agent: *\nDisallow: /\n", kToken);
        EXPECT_FALSE(policy.disallowsEverything()) << status;
        EXPECT_TRUE(allowed(policy, "/anything")) << status;
    }
}

TEST(RobotsPolicyTest, FromAnswerOutsideTheStatusRangesDisallowsEverything)
{
    for (int status : {100, 199, 600, 999, -1}) {
        const RobotsPolicy policy = RobotsPolicy::fromAnswer(status, "User-agent: *\nAllow: /\n", kToken);
        EXPECT_TRUE(policy.disallowsEverything()) << status;
        const RobotsPolicy::Verdict v = verdict(policy, "/anything");
        EXPECT_FALSE(v.allowed) << status;
        EXPECT_EQ(v.rule, QStringLiteral("robots.txt answered %1").arg(status));
    }
}

TEST(RobotsPolicyTest, AllowAllAndDisallowAll)
{
    const RobotsPolicy all = RobotsPolicy::allowAll();
    EXPECT_TRUE(allowed(all, "/"));
    EXPECT_TRUE(allowed(all, "/x?y"));
    EXPECT_FALSE(all.disallowsEverything());
    const RobotsPolicy none = RobotsPolicy::disallowAll(QStringLiteral("why not"));
    EXPECT_FALSE(allowed(none, "/"));
    EXPECT_EQ(verdict(none, "/x").rule, QStringLiteral("why not"));
}

TEST(RobotsPolicyTest, ManyWildcardsOnALongPathFinish)
{
    const QByteArray longPath = "/" + QByteArray(10000, 'a');
    const QByteArray blocked = longPath + "b";
    for (const char* pattern : {"/*a*a*a*a*a*b", "/*a*a*a*a*a*b$", "/**a**a**a**a**a**a*b*"}) {
        const RobotsPolicy policy = rulesFor(QByteArray("User-agent: *\nDisallow: ") + pattern + "\n");
        EXPECT_TRUE(allowed(policy, longPath.constData())) << pattern;
        EXPECT_FALSE(allowed(policy, blocked.constData())) << pattern;
    }
    const RobotsPolicy anchored = rulesFor("User-agent: *\nDisallow: /*a*a*a*a*a*b$\n");
    EXPECT_TRUE(allowed(anchored, (blocked + "a").constData()));
}

} // namespace
