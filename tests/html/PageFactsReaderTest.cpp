// The page facts read from parser events without a tree are the facts read from the tree,
// on crafted pages that reach the parser's odd corners and on every page of the installed
// documentation trees.
#include "html/HTMLParser.h"
#include "html/PageFacts.h"
#include "html/PageFactsReader.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

#include <string>

namespace {

PageFacts fromTree(const QByteArray& data)
{
    AppError error;
    const HTMLParserPtr parser = HTMLParser::initWithData(data, &error);
    return PageFacts::fromDocument(*parser);
}

// Reads the page both ways, expects the same facts, and gives them.
PageFacts readBothWays(const QByteArray& data)
{
    const PageFacts tree = fromTree(data);
    const PageFacts events = PageFactsReader::read(data);
    EXPECT_TRUE(events == tree) << "page: " << data.left(300).toStdString() << "\nfrom the tree:\n"
                                << tree.description().toStdString() << "from the events:\n"
                                << events.description().toStdString();
    return events;
}

PageFacts readBothWays(const std::string& page)
{
    return readBothWays(QByteArray::fromStdString(page));
}

PageFacts readBothWays(const char* page)
{
    return readBothWays(QByteArray(page));
}

QString anchorTexts(const PageFacts& facts)
{
    QStringList texts;
    for (const AnchorFacts& a : facts.anchors)
        texts << (a.firstChildText.isNull() ? QStringLiteral("(null)") : a.firstChildText);
    return texts.join(QLatin1Char('|'));
}

TEST(PageFactsReader, TitleMetasLinksAndAnchorsOfAnOrdinaryPage)
{
    const PageFacts facts = readBothWays(
        "<!DOCTYPE html><html><head><title> The title </title>"
        "<meta name=\"robots\" content=\"noindex\"><meta charset=utf-8>"
        "<link rel=canonical href=\"http://x/y\"><link rel=stylesheet></head>"
        "<body><p><a href=\"a.html\" rel=nofollow title=\"T\">A</a> <a name=top></a>"
        "<a href=b.html><img src=\"i.png\" alt=\"Pic\"></a></p></body></html>");
    EXPECT_EQ(facts.titleText, " The title ");
    ASSERT_EQ(facts.metas.size(), 2);
    EXPECT_EQ(facts.metas[0].first, "robots");
    EXPECT_EQ(facts.metas[0].second, "noindex");
    EXPECT_TRUE(facts.metas[1].first.isNull());
    ASSERT_EQ(facts.links.size(), 2);
    EXPECT_EQ(facts.links[0].second, "http://x/y");
    EXPECT_TRUE(facts.links[1].second.isNull());
    ASSERT_EQ(facts.anchors.size(), 3);
    EXPECT_EQ(facts.anchors[0].href, "a.html");
    EXPECT_EQ(facts.anchors[0].rel, "nofollow");
    EXPECT_EQ(facts.anchors[0].title, "T");
    EXPECT_EQ(facts.anchors[0].firstChildText, "A");
    EXPECT_TRUE(facts.anchors[1].href.isNull());
    EXPECT_TRUE(facts.anchors[1].firstChildText.isNull());
    EXPECT_TRUE(facts.anchors[2].hasImage);
    EXPECT_EQ(facts.anchors[2].imageAlt, "Pic");
    EXPECT_EQ(facts.anchors[2].imageSource, "i.png");
    EXPECT_TRUE(facts.anchors[2].firstChildText.isNull());
}

TEST(PageFactsReader, OnlyTheFirstChildCountsAndACommentOrInstructionIsOne)
{
    const PageFacts facts = readBothWays(
        "<html><head><title><!--note-->Real</title></head><body>"
        "<a href=1>one<!--c-->two</a><a href=2><!--first-->text</a><a href=3><?php echo 1 ?>x</a>"
        "<a href=4><b>bold</b> tail</a><a href=5>a&amp;b &lt; c</a><a href=6></a><a href=7> </a></body></html>");
    EXPECT_EQ(facts.titleText, "note");
    EXPECT_EQ(anchorTexts(facts), "one|first|echo 1 ?|(null)|a&b < c|(null)| ");
}

TEST(PageFactsReader, TextSplitByTheParserIsJoinedAsTheTreeJoinsIt)
{
    // Long text reaches the handler in several pieces, and references in pieces of their own.
    const std::string longText(20000, 'x');
    const PageFacts facts = readBothWays("<body><a href=1>" + longText + "&eacute;" + longText + "</a></body>");
    ASSERT_EQ(facts.anchors.size(), 1);
    EXPECT_EQ(facts.anchors[0].firstChildText.size(), 40001);
}

TEST(PageFactsReader, AttributesWithoutValueDuplicatesAndBooleans)
{
    const PageFacts facts = readBothWays(
        "<body><a href alt=\"\" title=first title=second>x</a><a href='q' rel=\"NoFollow\" nohref>y</a>"
        "<a HREF=\"UP\" Title=T>z</a></body>");
    ASSERT_EQ(facts.anchors.size(), 3);
    EXPECT_TRUE(facts.anchors[0].href.isNull());
    EXPECT_FALSE(facts.anchors[0].alt.isNull());
    EXPECT_TRUE(facts.anchors[0].alt.isEmpty());
    EXPECT_EQ(facts.anchors[0].title, "first");
    EXPECT_EQ(facts.anchors[1].rel, "NoFollow");
    EXPECT_EQ(facts.anchors[2].href, "UP");
}

TEST(PageFactsReader, OnlyTheFirstHeadAndTheFirstBodyAreRead)
{
    const PageFacts facts = readBothWays(
        "<html><head><title>One</title></head><body><a href=in>in</a></body></html>"
        "<head><title>Two</title><meta name=robots content=nofollow></head>"
        "<body><a href=after>after</a></body><a href=last>last</a>");
    EXPECT_EQ(facts.titleText, "One");
    EXPECT_EQ(facts.anchors.size(), 1);
    // An anchor before the body tag opens the body itself.
    const PageFacts implied = readBothWays("<html><a href=before>b</a><body><a href=x>x</a></body></html>");
    EXPECT_EQ(implied.anchors.size(), 2);
}

TEST(PageFactsReader, ImagesInNestedAnchorsAndAnchorsOutsideTheBody)
{
    readBothWays("<body><a href=1><span><a href=2><img alt=inner></a></span><img alt=second></a></body>");
    readBothWays("<head><a href=h><img src=s></a><title>t</title></head><body><a>x</a></body>");
    readBothWays("<body><img alt=before><a href=1><p><img src=deep></p></a></body>");
}

TEST(PageFactsReader, PrefixedNamesAreTheNameAfterThePrefix)
{
    const PageFacts facts = readBothWays(
        "<html><x:head><x:title>Prefixed</x:title></x:head><body><svg:a href=\"s\">svg</svg:a>"
        "<a:>colon</a:><:a href=c>c</:a><a href=ok>ok</a></body></html>");
    EXPECT_EQ(facts.titleText, "Prefixed");
    EXPECT_GE(facts.anchors.size(), 2);
}

TEST(PageFactsReader, ANameThatCannotFollowAPrefixEndsTheParse)
{
    // The tree builder's name check turns the parser's events off; elements still come, text
    // no longer does.
    const PageFacts facts = readBothWays("<body><a href=1>one</a><x:1y>bad</x:1y><a href=2>two</a></body>");
    ASSERT_EQ(facts.anchors.size(), 2);
    EXPECT_EQ(facts.anchors[0].firstChildText, "one");
    EXPECT_TRUE(facts.anchors[1].firstChildText.isNull());
}

TEST(PageFactsReader, ATreeTooDeepEndsTheParseWhereTheTreeBuilderStops)
{
    std::string deep = "<body><a href=top>top</a>";
    for (int i = 0; i < 300; ++i)
        deep += "<div>";
    deep += "<a href=deep>deep</a>";
    const PageFacts facts = readBothWays(deep);
    EXPECT_EQ(facts.anchors.size(), 1);
    std::string shallow = "<body>";
    for (int i = 0; i < 200; ++i)
        shallow += "<div>";
    shallow += "<a href=deep>deep</a>";
    EXPECT_EQ(readBothWays(shallow).anchors.size(), 1);
}

TEST(PageFactsReader, BrokenTagsDoctypesScriptsAndEmptyInput)
{
    readBothWays("<body><a href=1 <a href=2>two</a><a href=3>three</a");
    readBothWays("<html><body><a href=1>x</a><!DOCTYPE html><a href=2>y</a></body></html><a href=3>z</a>");
    readBothWays("<!-- first --><html><body></body></html><a href=after>after</a>");
    readBothWays("<?xml version=\"1.0\"?><html><body><a href=1><script>var a='<a href=2>';</script></a></body>");
    readBothWays("<title>no head</title><a href=x>x</a>");
    readBothWays("<a href=1><style>p{}</style>s</a><textarea><a href=2>t</a></textarea>");
    readBothWays("plain text, no markup at all");
    EXPECT_TRUE(readBothWays(std::string()).anchors.isEmpty());
    EXPECT_TRUE(PageFactsReader::read(QByteArray()).anchors.isEmpty());
}

TEST(PageFactsReader, BytesAreReadUpToTheFirstZeroAndInvalidUtf8IsKept)
{
    const PageFacts cut = readBothWays(QByteArray("<body><a href=1>one</a>\0<a href=2>two</a></body>", 48));
    EXPECT_EQ(cut.anchors.size(), 1);
    const PageFacts bad = readBothWays(QByteArray("<body><a href=\"\xff\xfe\">\xe9t\xe9</a></body>"));
    ASSERT_EQ(bad.anchors.size(), 1);
    readBothWays(QByteArray("\xef\xbb\xbf<title>bom</title><body><a href=b>b</a>"));
    readBothWays(QByteArray("\xff\xfe<\0b\0o\0d\0y\0>\0", 14));
}

// Every page of the documentation trees Debian ships: the PostgreSQL manual is installed with
// the test packages; the Python and SQLite ones are read when present.
TEST(PageFactsReader, EveryPageOfTheInstalledDocumentationTreesReadsTheSameWithoutATree)
{
    const QString postgres = QStringLiteral("/usr/share/doc/postgresql-doc-15/html");
    ASSERT_TRUE(QFile::exists(postgres)) << "postgresql-doc-15 is part of the test packages";
    int pages = 0;
    int anchors = 0;
    for (const QString& tree : {postgres, QStringLiteral("/usr/share/doc/python3-doc/html"),
                                QStringLiteral("/usr/share/doc/sqlite3-doc")}) {
        QDirIterator it(tree, {QStringLiteral("*.html"), QStringLiteral("*.htm")}, QDir::Files,
                        QDirIterator::Subdirectories | QDirIterator::FollowSymlinks);
        while (it.hasNext()) {
            QFile file(it.next());
            ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
            const QByteArray data = file.readAll();
            const PageFacts tree = fromTree(data);
            const PageFacts events = PageFactsReader::read(data);
            ASSERT_TRUE(events == tree) << file.fileName().toStdString();
            ++pages;
            anchors += int(events.anchors.size());
        }
    }
    EXPECT_GE(pages, 1000);
    EXPECT_GE(anchors, 20000);
}

} // namespace
