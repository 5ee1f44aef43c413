#include "AnchorFixture.h"

#include "html/HTMLLink.h"
#include "html/RangeException.h"
#include "html/RobotEntryFullURL.h"
#include "html/RobotEntryJokerURL.h"
#include "html/RobotsTxt.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QString kBase = QStringLiteral("http://www.example.com/");
const QString kPagePath = QStringLiteral("/a/b");
const QString kPageURL = QStringLiteral("http://www.example.com/a/b/page.html");

HTMLLinkPtr linkFor(const QString& href, const QString& base = kBase, const QString& path = kPagePath)
{
    return HTMLLink::initWithHTMLNode(makeAnchor(href), path, kPageURL, base);
}

// A null expectation stands for a null string.
struct ResolutionCase {
    const char* href;
    const char* debugHRef;
    const char* fullHref;
    bool external;
    const char* documentPath;
    const char* documentName;
};

void PrintTo(const ResolutionCase& c, std::ostream* os)
{
    *os << "href " << c.href;
}

QString text(const char* s)
{
    return s ? QString::fromUtf8(s) : QString();
}

class WorkedExampleTest : public ::testing::TestWithParam<ResolutionCase> {};

TEST_P(WorkedExampleTest, Resolves)
{
    const ResolutionCase& c = GetParam();
    HTMLLinkPtr link = linkFor(text(c.href));
    EXPECT_EQ(link->href(), text(c.href));
    EXPECT_EQ(link->debugHRef(), text(c.debugHRef));
    EXPECT_EQ(link->fullHref(), text(c.fullHref));
    EXPECT_EQ(link->isExternalLink(), c.external);
    EXPECT_FALSE(link->isPossibleFirstURLError());
    EXPECT_FALSE(link->isSamePageLink());
    EXPECT_EQ(link->documentPath().isNull(), c.documentPath == nullptr);
    EXPECT_EQ(link->documentPath(), text(c.documentPath));
    EXPECT_EQ(link->documentName().isNull(), c.documentName == nullptr);
    EXPECT_EQ(link->documentName(), text(c.documentName));
    EXPECT_EQ(link->debugAnchor(), QStringLiteral("A1"));
    EXPECT_EQ(link->anchor(), QStringLiteral("Link"));
}

INSTANTIATE_TEST_SUITE_P(
    PageInSubdirectory, WorkedExampleTest,
    ::testing::Values(
        ResolutionCase{"page2.html", "L6", "http://www.example.com/a/b/page2.html", false, "/a/b", "page2.html"},
        ResolutionCase{"../c/d.html", "L3", "http://www.example.com/a/c/d.html", false, "/a/c", "d.html"},
        ResolutionCase{"./e.html", "L4", "http://www.example.com/a/b/e.html", false, "/a/b", "e.html"},
        ResolutionCase{"/", "L5.1", "http://www.example.com/", false, "/", "index.html"},
        ResolutionCase{"/x/y/", "L5.2", "http://www.example.com/x/y", false, "/x", "y"},
        ResolutionCase{"#top", "L6", "http://www.example.com/a/b/", false, "/a/b", "index.html"},
        ResolutionCase{"https://example.com/a/b/z.html", "L1", "https://example.com/a/b/z.html", false, "b",
                       "z.html"},
        ResolutionCase{"HTTPS://example.com/", "L2", "HTTPS://example.com/", true, nullptr, nullptr},
        ResolutionCase{"http://other.example.org/", "L2", "http://other.example.org/", true, nullptr, nullptr},
        ResolutionCase{"../", "L3", "http://www.example.com/..", false, "/", ".."},
        // More of the same rules.
        ResolutionCase{"http://www.example.com/a/x.html", "L1", "http://www.example.com/a/x.html", false, "/a",
                       "x.html"},
        ResolutionCase{"HTTP://WWW.EXAMPLE.COM/Up.html", "L1", "HTTP://WWW.EXAMPLE.COM/Up.html", false, "/",
                       "Up.html"},
        ResolutionCase{"http://example.com/", "L1", "http://example.com/", false, "", "ex.html"},
        ResolutionCase{"/dir/page.html#sec", "L5.2", "http://www.example.com/dir/page.html", false, "/dir",
                       "page.html"},
        ResolutionCase{"?q=1", "L6", "http://www.example.com/a/b/?q=1", false, "/a/b", "?q=1"},
        ResolutionCase{"mailto:someone@example.com", "L6", "http://www.example.com/a/b/mailto:someone@example.com",
                       false, "/a/b", "mailto:someone@example.com"},
        ResolutionCase{"javascript:void(0)", "L6", "http://www.example.com/a/b/javascript:void(0)", false, "/a/b",
                       "javascript:void(0)"},
        ResolutionCase{" page.html", "L6", "http://www.example.com/a/b/ page.html", false, "/a/b", " page.html"},
        ResolutionCase{"sub//./deep/../x.html", "L6", "http://www.example.com/a/b/sub/deep/../x.html", false,
                       "/a/b/sub/deep/..", "x.html"},
        ResolutionCase{"./", "L4", "http://www.example.com", false, "", ""},
        ResolutionCase{"", "L6", "http://www.example.com/a/b", false, "/a", "b"},
        ResolutionCase{"//cdn.example.net/lib.js", "L5.2", "http://www.example.com/cdn.example.net/lib.js", false,
                       "/cdn.example.net", "lib.js"},
        ResolutionCase{"caf\xc3\xa9/men\xc3\xbc.html", "L6", "http://www.example.com/a/b/caf\xc3\xa9/men\xc3\xbc.html",
                       false, "/a/b/caf\xc3\xa9", "men\xc3\xbc.html"}));

TEST(HTMLLinkTest, OtherSchemeIsResolvedAsARelativePath)
{
    HTMLLinkPtr link = linkFor(QStringLiteral("ftp:x"));
    EXPECT_EQ(link->fullHref(), QStringLiteral("http://www.example.com/a/b/ftp:x"));
    EXPECT_FALSE(link->isExternalLink());
    EXPECT_EQ(link->debugHRef(), QStringLiteral("L6"));
}

TEST(HTMLLinkTest, HostThatStartsWithTheProjectHostIsInternal)
{
    HTMLLinkPtr link = linkFor(QStringLiteral("http://www.example.com.other.org/"), QStringLiteral("http://www.example.com"));
    EXPECT_FALSE(link->isExternalLink());
    EXPECT_EQ(link->debugHRef(), QStringLiteral("L1"));
    EXPECT_EQ(link->fullHref(), QStringLiteral("http://www.example.com.other.org/"));
    EXPECT_EQ(link->documentPath(), QStringLiteral(".other.org"));
    EXPECT_EQ(link->documentName(), QStringLiteral("index.html"));

    HTMLLinkPtr reduced = linkFor(QStringLiteral("https://example.com.au/page"));
    EXPECT_FALSE(reduced->isExternalLink());
    EXPECT_EQ(reduced->debugHRef(), QStringLiteral("L1"));
}

TEST(HTMLLinkTest, FragmentIsRemovedAfterResolution)
{
    HTMLLinkPtr link = linkFor(QStringLiteral("/dir/page.html#sec"));
    EXPECT_EQ(link->fullHref(), QStringLiteral("http://www.example.com/dir/page.html"));
    EXPECT_EQ(link->href(), QStringLiteral("/dir/page.html#sec"));
    HTMLLinkPtr external = linkFor(QStringLiteral("http://other.org/p#a#b"));
    EXPECT_EQ(external->fullHref(), QStringLiteral("http://other.org/p"));
}

TEST(HTMLLinkTest, ClimbingAboveTheRootIsARangeFault)
{
    EXPECT_THROW(linkFor(QStringLiteral("../../../x.html"), kBase, QStringLiteral("/a")), RangeException);
}

TEST(HTMLLinkTest, ClimbingToTheRootItselfIsAllowed)
{
    HTMLLinkPtr link = linkFor(QStringLiteral("../../x.html"), kBase, QStringLiteral("/a"));
    EXPECT_EQ(link->fullHref(), QStringLiteral("http://www.example.com/x.html"));
    EXPECT_EQ(link->documentPath(), QStringLiteral("/"));
    EXPECT_EQ(link->documentName(), QStringLiteral("x.html"));

    HTMLLinkPtr up = linkFor(QStringLiteral("../"), kBase, QStringLiteral("/"));
    EXPECT_EQ(up->fullHref(), QStringLiteral("http://www.example.com/.."));
    EXPECT_EQ(up->documentName(), QStringLiteral(".."));
}

TEST(HTMLLinkTest, BaseWithoutTrailingSlashEqualToTheURL)
{
    HTMLLinkPtr link = linkFor(QStringLiteral("/"), QStringLiteral("http://www.example.com"));
    EXPECT_EQ(link->debugHRef(), QStringLiteral("L5.1"));
    EXPECT_EQ(link->fullHref(), QStringLiteral("http://www.example.com"));
    EXPECT_EQ(link->documentPath(), QStringLiteral("/"));
    EXPECT_EQ(link->documentName(), QStringLiteral("index.html"));
}

TEST(HTMLLinkTest, InternalURLShorterThanTheBaseIsARangeFault)
{
    // Internal once scheme and "www." are set aside, but shorter than "http://www.example.com".
    EXPECT_THROW(linkFor(QStringLiteral("https://example.com")), RangeException);
}

TEST(HTMLLinkTest, EmptyReducedHrefIsARangeFault)
{
    EXPECT_THROW(linkFor(QStringLiteral("http://")), RangeException);
    HTMLLinkPtr slash = linkFor(QStringLiteral("http://www./"));
    EXPECT_TRUE(slash->isExternalLink());
}

TEST(HTMLLinkTest, WithoutHref)
{
    HTMLLinkPtr link = linkFor(QString());
    EXPECT_TRUE(link->href().isNull());
    EXPECT_TRUE(link->fullHref().isNull());
    EXPECT_TRUE(link->documentPath().isNull());
    EXPECT_TRUE(link->documentName().isNull());
    EXPECT_FALSE(link->isExternalLink());
    EXPECT_EQ(link->debugHRef(), QStringLiteral("L0"));
    EXPECT_EQ(link->anchor(), QStringLiteral("Link"));
    EXPECT_TRUE(link->isAllowedURLwithArrayOfDisallowed({RobotEntryFullURL::initWithEntryValue(QStringLiteral("/a"))}));
}

TEST(HTMLLinkTest, FieldsGivenByTheCaller)
{
    HTMLLinkPtr link = HTMLLink::initWithHTMLNode(makeAnchor(QStringLiteral("x.html")), kPagePath, kPageURL, kBase);
    EXPECT_EQ(link->currentPath(), kPagePath);
    EXPECT_EQ(link->currentFullURL(), kPageURL);
    EXPECT_EQ(link->projectBaseURL(), kBase);
    EXPECT_TRUE(link->headers().isEmpty());
    EXPECT_FALSE(link->isSamePageLink());
}

TEST(HTMLLinkTest, SchemeRepair)
{
    HTMLLinkPtr https = linkFor(QStringLiteral("p.html"), QStringLiteral("https://www.example.com/"));
    EXPECT_EQ(https->fullHref(), QStringLiteral("https://www.example.com/a/b/p.html"));
    EXPECT_EQ(https->documentPath(), QStringLiteral("/a/b"));

    // The test ignores case, the replacement does not.
    HTMLLinkPtr upper = linkFor(QStringLiteral("p.html"), QStringLiteral("HTTP://www.example.com/"));
    EXPECT_EQ(upper->fullHref(), QStringLiteral("HTTP:/www.example.com/a/b/p.html"));

    // Every "http:/" of the string is widened.
    HTMLLinkPtr embedded = linkFor(QStringLiteral("/"), QStringLiteral("http:/www.example.com/?u=http://y.org"));
    EXPECT_EQ(embedded->fullHref(), QStringLiteral("http://www.example.com/?u=http:///y.org"));
}

TEST(HTMLLinkTest, CanonicallyEquivalentProjectAddressIsAPossibleFirstURLError)
{
    // The project host typed with a composed e-acute, the link with a decomposed one: not a
    // prefix (the lengths differ) but the same address.
    HTMLLinkPtr link = linkFor(QStringLiteral("http://e\u0301xample.com/"), QStringLiteral("http://www.\u00e9xample.com/"));
    EXPECT_TRUE(link->isExternalLink());
    EXPECT_TRUE(link->isPossibleFirstURLError());
    EXPECT_EQ(link->debugHRef(), QStringLiteral("L2"));
    EXPECT_TRUE(link->documentPath().isNull());
}

TEST(HTMLLinkTest, SchemeOrWwwFormOfTheProjectAddressIsInternal)
{
    for (const char* href : {"https://example.com/page.html", "http://example.com/dir/", "https://www.example.com/"}) {
        HTMLLinkPtr link = linkFor(QString::fromLatin1(href), QStringLiteral("http://www.example.com"));
        EXPECT_FALSE(link->isExternalLink()) << href;
        EXPECT_FALSE(link->isPossibleFirstURLError()) << href;
    }
}

TEST(HTMLLinkTest, NonAsciiHostComparesWithoutCase)
{
    HTMLLinkPtr link = linkFor(QStringLiteral("http://www.CAF\u00c9.fr/menu"), QStringLiteral("http://www.caf\u00e9.fr/"));
    EXPECT_FALSE(link->isExternalLink());
    EXPECT_EQ(link->debugHRef(), QStringLiteral("L1"));
    EXPECT_EQ(link->documentName(), QStringLiteral("menu"));
}

TEST(HTMLLinkTest, ExtractFromHRef)
{
    QString directory = QStringLiteral("stale");
    QString name = QStringLiteral("stale");
    HTMLLink::extractFromHRef(QStringLiteral("../c/d.html"), QStringLiteral("/a/b"), directory, name);
    EXPECT_EQ(directory, QStringLiteral("/a/c"));
    EXPECT_EQ(name, QStringLiteral("d.html"));

    HTMLLink::extractFromHRef(QStringLiteral("./e.html"), QStringLiteral("/a/b"), directory, name);
    EXPECT_EQ(directory, QStringLiteral("/a/b"));
    EXPECT_EQ(name, QStringLiteral("e.html"));

    HTMLLink::extractFromHRef(QStringLiteral("/x/y.html"), QStringLiteral("/a/b"), directory, name);
    EXPECT_EQ(directory, QStringLiteral("/x"));
    EXPECT_EQ(name, QStringLiteral("y.html"));

    HTMLLink::extractFromHRef(QStringLiteral("/"), QStringLiteral("/a/b"), directory, name);
    EXPECT_EQ(directory, QStringLiteral(""));
    EXPECT_EQ(name, QStringLiteral("/"));

    HTMLLink::extractFromHRef(QStringLiteral("."), QStringLiteral("/a/b"), directory, name);
    EXPECT_TRUE(directory.isEmpty());
    EXPECT_FALSE(directory.isNull());
    EXPECT_TRUE(name.isEmpty());

    EXPECT_THROW(HTMLLink::extractFromHRef(QStringLiteral("../x"), QString(), directory, name), RangeException);
}

TEST(HTMLLinkTest, ExtractPathAndDocumentWithURL)
{
    HTMLLink link;
    link.extractPathAndDocumentWithURL(QStringLiteral("http://www.example.com/a/b/page2.html"), kBase);
    EXPECT_EQ(link.documentPath(), QStringLiteral("/a/b"));
    EXPECT_EQ(link.documentName(), QStringLiteral("page2.html"));

    link.extractPathAndDocumentWithURL(QStringLiteral("http://www.example.com/docs/"), kBase);
    EXPECT_EQ(link.documentPath(), QStringLiteral("/docs"));
    EXPECT_EQ(link.documentName(), QStringLiteral("index.html"));

    // Every occurrence of the directory goes from the name.
    link.extractPathAndDocumentWithURL(QStringLiteral("http://www.example.com/b/b/bb.html"), kBase);
    EXPECT_EQ(link.documentPath(), QStringLiteral("/b/b"));
    EXPECT_EQ(link.documentName(), QStringLiteral("bb.html"));

    EXPECT_THROW(link.extractPathAndDocumentWithURL(QStringLiteral("http://x"), kBase), RangeException);
}

TEST(HTMLLinkTest, Description)
{
    HTMLLinkPtr internal = linkFor(QStringLiteral("page2.html"));
    EXPECT_EQ(internal->description(),
              QStringLiteral("Link (A1/L6) href(page2.html) fullHREF(http://www.example.com/a/b/page2.html) Anchor(Link)"));
    HTMLLinkPtr external = linkFor(QStringLiteral("http://other.org/%1"));
    EXPECT_EQ(external->description(), QStringLiteral("External Link http://other.org/%1"));
    HTMLLinkPtr none = linkFor(QString());
    EXPECT_EQ(none->description(), QStringLiteral("Link (A1/L0) href((null)) fullHREF((null)) Anchor(Link)"));
}

// Anchor text.

struct AnchorCase {
    const char* innerHTML;
    const char* attributes;
    const char* anchor;
    const char* code;
};

void PrintTo(const AnchorCase& c, std::ostream* os)
{
    *os << "<a " << c.attributes << ">" << c.innerHTML << "</a>";
}

class AnchorTest : public ::testing::TestWithParam<AnchorCase> {};

TEST_P(AnchorTest, Anchor)
{
    const AnchorCase& c = GetParam();
    HTMLLinkPtr link = HTMLLink::initWithHTMLNode(makeAnchor(QStringLiteral("/p.html"), text(c.innerHTML), text(c.attributes)),
                                                  kPagePath, kPageURL, kBase);
    EXPECT_EQ(link->anchor(), text(c.anchor));
    EXPECT_FALSE(link->anchor().isNull());
    EXPECT_EQ(link->debugAnchor(), text(c.code));
}

INSTANTIATE_TEST_SUITE_P(
    Anchors, AnchorTest,
    ::testing::Values(
        AnchorCase{"Plain text", "", "Plain text", "A1"},
        AnchorCase{"\n   Trimmed\t text \n", "", "Trimmed\t text", "A1"},
        AnchorCase{"  Caf\xc3\xa9 cr\xc3\xa8me ", "", "Caf\xc3\xa9 cr\xc3\xa8me", "A1"},
        AnchorCase{"Text first <img src=\"i.png\" alt=\"Image\">", "", "Text first", "A1"},
        AnchorCase{"<img src=\"i.png\" alt=\"Image alt\"> text after", "", "Image alt", "A4"},
        AnchorCase{"<img src=\"i.png\" alt=\"\">", "", "", "A4"},
        AnchorCase{"<img src=\"i.png\">", "", "i.png", "A5"},
        AnchorCase{"<img src=\"i.png\" alt>", "", "i.png", "A5"},
        AnchorCase{"<img>", "", "html block", "A6"},
        AnchorCase{"", "", "html block", "A6"},
        AnchorCase{"   ", "", "html block", "A6"},
        AnchorCase{"<span>In a span</span>", "", "html block", "A6"},
        AnchorCase{"<span><img src=\"s.png\" alt=\"Deep\"></span>", "", "Deep", "A4"},
        AnchorCase{"<span>Span</span>", "title=\"Title\"", "Title", "A3"},
        AnchorCase{"<span>Span</span>", "alt=\"Alt\" title=\"Title\"", "Alt", "A2"},
        AnchorCase{"", "alt=\"\" title=\"Title\"", "", "A2"},
        AnchorCase{"<img src=\"i.png\" alt=\"Image\">", "title=\"  Title  \"", "  Title  ", "A3"},
        AnchorCase{"Text", "title=\"Title\"", "Text", "A1"},
        AnchorCase{"<!-- note -->Text", "", "note", "A1"},
        AnchorCase{"<b>Bold</b> text", "", "html block", "A6"}));

TEST(HTMLLinkTest, NullNodeGivesAnEmptyLink)
{
    HTMLLinkPtr link = HTMLLink::initWithHTMLNode(nullptr, kPagePath, kPageURL, kBase);
    EXPECT_TRUE(link->href().isNull());
    EXPECT_EQ(link->anchor(), QStringLiteral("html block"));
    EXPECT_EQ(link->debugAnchor(), QStringLiteral("A6"));
    EXPECT_EQ(link->debugHRef(), QStringLiteral("L0"));
}

// Robots test of a link.

QList<RobotEntryPtr> rules()
{
    return {RobotEntryFullURL::initWithEntryValue(QStringLiteral("/private")),
            RobotEntryJokerURL::initWithEntryValue(QStringLiteral("/*.pdf")),
            RobotEntryFullURL::initWithEntryValue(QStringLiteral("/search?q"))};
}

TEST(HTMLLinkRobotsTest, NoRulesAllowEverything)
{
    HTMLLinkPtr link = linkFor(QStringLiteral("/private/x.html"));
    EXPECT_TRUE(link->isAllowedURLwithArrayOfDisallowed(QList<RobotEntryPtr>()));
    EXPECT_TRUE(link->isAllowedURLwithArrayOfDisallowed(nullptr));
}

TEST(HTMLLinkRobotsTest, SiteRelativePathIsTested)
{
    EXPECT_FALSE(linkFor(QStringLiteral("/private/x.html"))->isAllowedURLwithArrayOfDisallowed(rules()));
    EXPECT_FALSE(linkFor(QStringLiteral("/PRIVATE"))->isAllowedURLwithArrayOfDisallowed(rules()));
    EXPECT_FALSE(linkFor(QStringLiteral("doc.pdf"))->isAllowedURLwithArrayOfDisallowed(rules()));
    EXPECT_TRUE(linkFor(QStringLiteral("/public/x.html"))->isAllowedURLwithArrayOfDisallowed(rules()));
    // The query string stays part of the path.
    EXPECT_FALSE(linkFor(QStringLiteral("/search?q=1"))->isAllowedURLwithArrayOfDisallowed(rules()));
    EXPECT_TRUE(linkFor(QStringLiteral("/search"))->isAllowedURLwithArrayOfDisallowed(rules()));
    // "www." is ignored on both sides.
    EXPECT_FALSE(linkFor(QStringLiteral("http://example.com/private"))->isAllowedURLwithArrayOfDisallowed(rules()));
}

TEST(HTMLLinkRobotsTest, SiteRootIsAlwaysAllowed)
{
    const QList<RobotEntryPtr> everything{std::make_shared<RobotEntry>(QStringLiteral("/"))};
    EXPECT_TRUE(linkFor(QStringLiteral("/"))->isAllowedURLwithArrayOfDisallowed(everything));
    EXPECT_FALSE(linkFor(QStringLiteral("/x"))->isAllowedURLwithArrayOfDisallowed(everything));
}

TEST(HTMLLinkRobotsTest, MissingSlashIsAddedBeforeTesting)
{
    // With the base cut by length, "http://example.com/private" minus "http://example.com" (no
    // trailing slash in the base) leaves "/private"; with a base ending in a slash it leaves
    // "private", which becomes "/private".
    HTMLLinkPtr link = linkFor(QStringLiteral("/private"), QStringLiteral("http://www.example.com"));
    EXPECT_FALSE(link->isAllowedURLwithArrayOfDisallowed(rules()));
    EXPECT_FALSE(linkFor(QStringLiteral("/private"))->isAllowedURLwithArrayOfDisallowed(rules()));
}

TEST(HTMLLinkRobotsTest, URLShorterThanTheBaseIsARangeFault)
{
    HTMLLink link;
    link.setProjectBaseURL(kBase);
    link.setFullHref(QStringLiteral("http://x"));
    EXPECT_THROW(link.isAllowedURLwithArrayOfDisallowed(rules()), RangeException);
    // No rules: nothing is cut, nothing faults.
    EXPECT_TRUE(link.isAllowedURLwithArrayOfDisallowed(QList<RobotEntryPtr>()));
}

TEST(HTMLLinkRobotsTest, TheSiteRulesAnswer)
{
    const QString site = QStringLiteral("http://www.example.com");
    QList<RobotEntryPtr> fromFile;
    loadRobotsTxtToArray(QStringLiteral("User-agent: *\nDisallow: /private\n"), fromFile);
    HTMLLinkPtr blocked = HTMLLink::initWithHTMLNode(makeAnchor(QStringLiteral("/private/a.html")), QStringLiteral("/"), site, site);
    EXPECT_FALSE(blocked->isAllowedURLwithArrayOfDisallowed(fromFile));
    HTMLLinkPtr open = HTMLLink::initWithHTMLNode(makeAnchor(QStringLiteral("/open/a.html")), QStringLiteral("/"), site, site);
    EXPECT_TRUE(open->isAllowedURLwithArrayOfDisallowed(fromFile));
}

} // namespace
