#include "html/RobotEntry.h"
#include "html/RobotEntryFullURL.h"
#include "html/RobotEntryJokerURL.h"
#include "html/RobotsTxt.h"
#include "store/Project.h"

#include <gtest/gtest.h>

namespace {

QList<RobotEntryPtr> load(const QString& text)
{
    auto project = std::make_shared<Project>();
    project->setUrl(QStringLiteral("http://example.com"));
    QList<RobotEntryPtr> rules;
    project->loadRobotsTxt(text, rules);
    return rules;
}

bool allowed(const QList<RobotEntryPtr>& rules, const QString& path)
{
    auto project = std::make_shared<Project>();
    return project->isAllowedURL(path, rules);
}

template <typename T>
std::shared_ptr<T> ruleAs(const QList<RobotEntryPtr>& rules, int index)
{
    return std::dynamic_pointer_cast<T>(rules.value(index));
}

TEST(RobotsTxtTest, LowerCaseDisallowMakesAPrefixRule)
{
    const QList<RobotEntryPtr> rules = load(QStringLiteral("disallow: /private"));
    ASSERT_EQ(rules.size(), 1);
    ASSERT_TRUE(ruleAs<RobotEntryFullURL>(rules, 0));
    EXPECT_EQ(rules[0]->robotEntryValue(), QStringLiteral("/private"));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/private")));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/PRIVATE/x")));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/private-area")));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/public")));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/priv")));
}

TEST(RobotsTxtTest, StarMakesAFragmentRule)
{
    const QList<RobotEntryPtr> rules = load(QStringLiteral("Disallow: /*.pdf"));
    ASSERT_EQ(rules.size(), 1);
    ASSERT_TRUE(ruleAs<RobotEntryJokerURL>(rules, 0));
    EXPECT_EQ(rules[0]->robotEntryValue(), QStringLiteral(".pdf"));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/docs/file.pdf")));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/a.pdf.html")));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/docs/file.PDF")));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/docs/file.html")));
}

TEST(RobotsTxtTest, StarInTheMiddleLeavesADoubleSlash)
{
    const QList<RobotEntryPtr> rules = load(QStringLiteral("Disallow: /a/*/b"));
    ASSERT_EQ(rules.size(), 1);
    EXPECT_EQ(rules[0]->robotEntryValue(), QStringLiteral("a//b"));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/a/x/b")));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/x/a//b/y")));
}

TEST(RobotsTxtTest, StarAloneDisallowsNothing)
{
    const QList<RobotEntryPtr> rules = load(QStringLiteral("Disallow: /*"));
    ASSERT_EQ(rules.size(), 1);
    EXPECT_EQ(rules[0]->robotEntryValue(), QStringLiteral(""));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/")));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/anything")));
    EXPECT_TRUE(allowed(rules, QStringLiteral("")));
}

TEST(RobotsTxtTest, WholeSiteAndEmptyValuesMakeNoRule)
{
    EXPECT_TRUE(load(QStringLiteral("Disallow: /")).isEmpty());
    EXPECT_TRUE(load(QStringLiteral("Disallow:")).isEmpty());
    EXPECT_TRUE(load(QStringLiteral("Disallow:    ")).isEmpty());
    EXPECT_TRUE(load(QStringLiteral("Disallow: private")).isEmpty());
    EXPECT_TRUE(load(QStringLiteral("Disallow: *.pdf")).isEmpty());
}

TEST(RobotsTxtTest, CommentStaysPartOfTheValue)
{
    const QList<RobotEntryPtr> rules = load(QStringLiteral("Disallow: /x # old"));
    ASSERT_EQ(rules.size(), 1);
    ASSERT_TRUE(ruleAs<RobotEntryFullURL>(rules, 0));
    EXPECT_EQ(rules[0]->robotEntryValue(), QStringLiteral("/x # old"));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/x")));
}

TEST(RobotsTxtTest, EveryUserAgentCounts)
{
    const QList<RobotEntryPtr> rules = load(QStringLiteral("User-agent: Googlebot\n"
                                                           "Disallow: /google-only\n"
                                                           "\n"
                                                           "User-agent: *\n"
                                                           "Allow: /private/open\n"
                                                           "Disallow: /private\n"
                                                           "Sitemap: http://example.com/sitemap.xml\n"
                                                           "# Disallow: /commented\n"));
    ASSERT_EQ(rules.size(), 2);
    EXPECT_EQ(rules[0]->robotEntryValue(), QStringLiteral("/google-only"));
    EXPECT_EQ(rules[1]->robotEntryValue(), QStringLiteral("/private"));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/google-only/page")));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/private/open")));
}

TEST(RobotsTxtTest, ValueStopsAtTheNextColon)
{
    const QList<RobotEntryPtr> rules = load(QStringLiteral("Disallow: /cgi-bin:old"));
    ASSERT_EQ(rules.size(), 1);
    ASSERT_TRUE(ruleAs<RobotEntryFullURL>(rules, 0));
    EXPECT_EQ(rules[0]->robotEntryValue(), QStringLiteral("/cgi-bin"));
}

TEST(RobotsTxtTest, LineEndsOfEveryKind)
{
    const QString text = QStringLiteral("Disallow: /crlf\r\nDisallow: /cr\rDisallow: /lf\n") + QChar(0x2028)
        + QStringLiteral("Disallow: /ls") + QChar(0x2029) + QStringLiteral("Disallow: /ps") + QChar(0x0085)
        + QStringLiteral("Disallow: /nel");
    const QList<RobotEntryPtr> rules = load(text);
    QStringList values;
    for (const RobotEntryPtr& rule : rules)
        values.append(rule->robotEntryValue());
    EXPECT_EQ(values, (QStringList{"/crlf", "/cr", "/lf", "/ls", "/ps", "/nel"}));
}

TEST(RobotsTxtTest, LinesAreTrimmedAndKeywordIgnoresCase)
{
    const QList<RobotEntryPtr> rules =
        load(QStringLiteral("   DISALLOW:\t/a  \n\tDisAllow:/b\nDisallow /c\nNoDisallow: /d\nDisallowed: /e"));
    QStringList values;
    for (const RobotEntryPtr& rule : rules)
        values.append(rule->robotEntryValue());
    EXPECT_EQ(values, (QStringList{"/a", "/b"}));
}

TEST(RobotsTxtTest, RulesAreAppendedInFileOrder)
{
    auto project = std::make_shared<Project>();
    QList<RobotEntryPtr> rules{RobotEntryFullURL::initWithEntryValue(QStringLiteral("/first"))};
    project->loadRobotsTxt(QStringLiteral("Disallow: /second\nDisallow: /*third"), rules);
    ASSERT_EQ(rules.size(), 3);
    EXPECT_EQ(rules[0]->description(), QStringLiteral("RobotEntryFullURL::/first"));
    EXPECT_EQ(rules[1]->description(), QStringLiteral("RobotEntryFullURL::/second"));
    EXPECT_EQ(rules[2]->description(), QStringLiteral("RobotEntryJokerURL::third"));
}

TEST(RobotsTxtTest, EmptyOrNullTextGivesNoRules)
{
    EXPECT_TRUE(load(QString()).isEmpty());
    EXPECT_TRUE(load(QStringLiteral("")).isEmpty());
    EXPECT_TRUE(load(QStringLiteral("\n\r\n")).isEmpty());
}

TEST(RobotsTxtTest, NoRulesAllowEverything)
{
    EXPECT_TRUE(allowed({}, QStringLiteral("/anything")));
}

TEST(RobotsTxtTest, FirstDisallowingRuleDecides)
{
    const QList<RobotEntryPtr> rules{RobotEntryFullURL::initWithEntryValue(QStringLiteral("/a")),
                                     RobotEntryJokerURL::initWithEntryValue(QStringLiteral("/*.cgi"))};
    EXPECT_FALSE(allowed(rules, QStringLiteral("/b/run.cgi")));
    EXPECT_FALSE(allowed(rules, QStringLiteral("/a/x")));
    EXPECT_TRUE(allowed(rules, QStringLiteral("/b/x")));
    EXPECT_TRUE(isAllowedURLWithArrayOfDisallowed(QStringLiteral("/b/x"), rules));
}

TEST(RobotEntryTest, BaseRuleDisallowsEveryPath)
{
    RobotEntryPtr rule = RobotEntry::initWithEntryValue(QStringLiteral("/x"));
    EXPECT_TRUE(rule->isURLDisallowed(QStringLiteral("/y")));
    EXPECT_TRUE(rule->isURLDisallowed(QString()));
    EXPECT_EQ(rule->robotEntryValue(), QStringLiteral("/x"));
}

TEST(RobotEntryTest, FullURLRuleComparesOverItsLength)
{
    RobotEntryFullURLPtr rule = RobotEntryFullURL::initWithEntryValue(QStringLiteral("/Caf\u00e9"));
    EXPECT_EQ(rule->robotEntryValue(), QStringLiteral("/Caf\u00e9"));
    EXPECT_TRUE(rule->isURLDisallowed(QStringLiteral("/CAF\u00c9/menu")));
    // Compared over the rule's length: a decomposed e-acute makes the path longer, so the
    // cut falls before its accent; a same-length equivalent form matches.
    EXPECT_FALSE(rule->isURLDisallowed(QStringLiteral("/cafe\u0301")));
    EXPECT_TRUE(RobotEntryFullURL::initWithEntryValue(QStringLiteral("/\u00c5"))->isURLDisallowed(QStringLiteral("/\u212b/x")));
    EXPECT_FALSE(rule->isURLDisallowed(QStringLiteral("/Caf")));
    EXPECT_FALSE(rule->isURLDisallowed(QStringLiteral("/x/Caf\u00e9")));
    EXPECT_EQ(rule->description(), QStringLiteral("RobotEntryFullURL::/Caf\u00e9"));
}

TEST(RobotEntryTest, JokerRuleKeepsDollarAsALiteral)
{
    RobotEntryJokerURLPtr rule = RobotEntryJokerURL::initWithEntryValue(QStringLiteral("/*.php$"));
    EXPECT_EQ(rule->robotEntryValue(), QStringLiteral(".php$"));
    EXPECT_FALSE(rule->isURLDisallowed(QStringLiteral("/index.php")));
    EXPECT_TRUE(rule->isURLDisallowed(QStringLiteral("/index.php$")));
    EXPECT_EQ(rule->description(), QStringLiteral("RobotEntryJokerURL::.php$"));
}

TEST(RobotEntryTest, JokerRuleDropsTheFirstCharacterWhateverItIs)
{
    EXPECT_EQ(RobotEntryJokerURL::initWithEntryValue(QStringLiteral("/**a**b*"))->robotEntryValue(), QStringLiteral("ab"));
    EXPECT_EQ(RobotEntryJokerURL::initWithEntryValue(QStringLiteral("*x"))->robotEntryValue(), QStringLiteral("x"));
    EXPECT_EQ(RobotEntryJokerURL::initWithEntryValue(QStringLiteral(""))->robotEntryValue(), QStringLiteral(""));
    EXPECT_FALSE(RobotEntryJokerURL::initWithEntryValue(QStringLiteral(""))->isURLDisallowed(QStringLiteral("/a")));
}

} // namespace
