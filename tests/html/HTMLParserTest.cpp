#include "html/HTMLNode.h"
#include "html/HTMLParser.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

namespace {

HTMLParserPtr parse(const char* html)
{
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithData(QByteArray(html), &error);
    EXPECT_TRUE(error.domain.isEmpty());
    return parser;
}

TEST(HTMLParserTest, OptionValues)
{
    EXPECT_EQ(HTMLParser::kStringParseOptions, 97);
    EXPECT_EQ(HTMLParser::kDataParseOptions, 96);
}

TEST(HTMLParserTest, EmptyStringReportsErrorAndHasNoDocument)
{
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithString(QStringLiteral(""), &error);
    ASSERT_TRUE(parser);
    EXPECT_EQ(error.domain, QStringLiteral("HTMLParserdomain"));
    EXPECT_EQ(error.code, 1);
    EXPECT_FALSE(parser->body());
    EXPECT_FALSE(parser->doc());
    EXPECT_FALSE(parser->html());
    EXPECT_FALSE(parser->head());
}

TEST(HTMLParserTest, EmptyStringWithoutErrorSlotStillGivesAParser)
{
    HTMLParserPtr parser = HTMLParser::initWithString(QString(), nullptr);
    ASSERT_TRUE(parser);
    EXPECT_FALSE(parser->doc());
}

TEST(HTMLParserTest, NullBytesReportError)
{
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithData(QByteArray(), &error);
    ASSERT_TRUE(parser);
    EXPECT_EQ(error.domain, QStringLiteral("HTMLParserdomain"));
    EXPECT_EQ(error.code, 1);
    EXPECT_FALSE(parser->doc());
}

TEST(HTMLParserTest, StringIsParsed)
{
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithString(
        QStringLiteral("<html><head><title>Caf\u00e9</title></head><body><p>x</p></body></html>"), &error);
    EXPECT_TRUE(error.domain.isEmpty());
    ASSERT_TRUE(parser->head());
    EXPECT_EQ(parser->head()->findChildTag(QStringLiteral("title"))->contents(), QStringLiteral("Caf\u00e9"));
    ASSERT_TRUE(parser->body());
    EXPECT_EQ(parser->body()->tagName(), QStringLiteral("body"));
    ASSERT_TRUE(parser->html());
    EXPECT_EQ(parser->html()->tagName(), QStringLiteral("html"));
}

TEST(HTMLParserTest, DataIsReadAsUtf8WhateverThePageDeclares)
{
    HTMLParserPtr parser = parse("<html><head><meta charset=\"iso-8859-1\"><title>\xc3\xa9t\xc3\xa9</title>"
                                 "</head><body></body></html>");
    ASSERT_TRUE(parser->head());
    EXPECT_EQ(parser->head()->findChildTag(QStringLiteral("title"))->contents(), QStringLiteral("\u00e9t\u00e9"));
}

TEST(HTMLParserTest, ZeroByteEndsTheDocument)
{
    const char bytes[] = "<html><body><p>first</p>\0<p>second</p><a href=x>y</a></body></html>";
    HTMLParserPtr parser = HTMLParser::initWithData(QByteArray(bytes, sizeof bytes - 1), nullptr);
    ASSERT_TRUE(parser->body());
    const QList<HTMLNodePtr> paragraphs = parser->body()->findChildTags(QStringLiteral("p"));
    ASSERT_EQ(paragraphs.size(), 1);
    EXPECT_EQ(paragraphs.first()->contents(), QStringLiteral("first"));
    EXPECT_TRUE(parser->body()->findChildTags(QStringLiteral("a")).isEmpty());
}

TEST(HTMLParserTest, RawDataWithoutTerminatorIsReadSafely)
{
    static const char page[] = "<p>abc</p>XYZ";
    // Only the first 10 bytes belong to the array; what follows in memory must not be read.
    const QByteArray data = QByteArray::fromRawData(page, 10);
    HTMLParserPtr parser = HTMLParser::initWithData(data, nullptr);
    ASSERT_TRUE(parser->body());
    EXPECT_EQ(parser->body()->allContents(), QStringLiteral("abc"));
}

TEST(HTMLParserTest, EmptyDataIsNotAnError)
{
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithData(QByteArray(""), &error);
    ASSERT_TRUE(parser);
    EXPECT_TRUE(error.domain.isEmpty());
    EXPECT_FALSE(parser->body());
}

TEST(HTMLParserTest, ContentsOfURLReadsALocalFile)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QFile file(dir.filePath(QStringLiteral("page.html")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("<html><body><a href=\"/x\">X</a></body></html>");
    file.close();
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithContentsOfURL(QUrl::fromLocalFile(file.fileName()), &error);
    ASSERT_TRUE(parser);
    EXPECT_TRUE(error.domain.isEmpty());
    EXPECT_EQ(parser->body()->findChildTags(QStringLiteral("a")).size(), 1);
}

TEST(HTMLParserTest, ContentsOfMissingURLIsNull)
{
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithContentsOfURL(
        QUrl::fromLocalFile(QDir::temp().filePath(QStringLiteral("quillmere-no-such-page.html"))), &error);
    EXPECT_FALSE(parser);
    EXPECT_FALSE(error.domain.isEmpty());
}

TEST(HTMLParserTest, NodesStayUsableAfterTheParserIsReleased)
{
    HTMLNodePtr body = parse("<html><body><a href=\"/x\">X</a></body></html>")->body();
    ASSERT_TRUE(body);
    HTMLNodePtr anchor = body->findChildTag(QStringLiteral("a"));
    ASSERT_TRUE(anchor);
    EXPECT_EQ(anchor->getAttributeNamed(QStringLiteral("href")), QStringLiteral("/x"));
}

TEST(HTMLParserTest, DocumentNode)
{
    HTMLParserPtr parser = parse("<p>x</p>");
    HTMLNodePtr doc = parser->doc();
    ASSERT_TRUE(doc);
    ASSERT_TRUE(doc->node());
    EXPECT_EQ(doc->node()->type, XML_HTML_DOCUMENT_NODE);
    EXPECT_EQ(doc->findChildTag(QStringLiteral("p"))->contents(), QStringLiteral("x"));
}

} // namespace
