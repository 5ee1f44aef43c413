#include "fetch/ResponseHeaderParser.h"

#include <gtest/gtest.h>

TEST(ResponseHeaderParser, ReadsStatusAndFieldsUpToTheEmptyLine)
{
    ResponseHeaderParser parser;
    EXPECT_FALSE(parser.addLine("HTTP/1.1 404 Not Found\r\n"));
    EXPECT_FALSE(parser.addLine("Content-Type: text/html; charset=utf-8\r\n"));
    EXPECT_FALSE(parser.addLine("Content-Length:   12  \r\n"));
    EXPECT_TRUE(parser.addLine("\r\n"));
    EXPECT_EQ(parser.statusCode(), 404);
    const auto fields = parser.headerFields();
    EXPECT_EQ(fields.value("Content-Type"), QStringLiteral("text/html; charset=utf-8"));
    EXPECT_EQ(fields.value("Content-Length"), QStringLiteral("12"));
}

TEST(ResponseHeaderParser, AStatusLineStartsAFreshBlock)
{
    ResponseHeaderParser parser;
    parser.addLine("HTTP/1.1 301 Moved\r\n");
    parser.addLine("Location: /b\r\n");
    EXPECT_TRUE(parser.addLine("\r\n"));
    parser.addLine("HTTP/2 200\r\n");
    parser.addLine("content-type: text/plain\r\n");
    EXPECT_TRUE(parser.addLine("\r\n"));
    EXPECT_EQ(parser.statusCode(), 200);
    EXPECT_FALSE(parser.headerFields().contains("Location"));
    HTTPURLResponse response(QUrl("http://h/"), parser.statusCode(), parser.headerFields());
    EXPECT_EQ(response.valueForHTTPHeaderField("Content-Type"), QStringLiteral("text/plain"));
}

TEST(ResponseHeaderParser, RepeatedFieldsAreJoinedAndFoldedLinesContinue)
{
    ResponseHeaderParser parser;
    parser.addLine("HTTP/1.0 200 OK\r\n");
    parser.addLine("Set-Cookie: a=1\r\n");
    parser.addLine("set-cookie: b=2\r\n");
    parser.addLine("X-Long: first\r\n");
    parser.addLine("   second\r\n");
    parser.addLine("\r\n");
    EXPECT_EQ(parser.headerFields().value("Set-Cookie"), QStringLiteral("a=1, b=2"));
    EXPECT_EQ(parser.headerFields().value("X-Long"), QStringLiteral("first second"));
}

TEST(HTTPURLResponse, AbsentFieldIsNullAndEmptyFieldIsEmpty)
{
    ResponseHeaderParser parser;
    parser.addLine("HTTP/1.1 200 OK\r\n");
    parser.addLine("Content-Type:\r\n");
    parser.addLine("\r\n");
    HTTPURLResponse response(QUrl("http://h/"), 200, parser.headerFields());
    EXPECT_FALSE(response.valueForHTTPHeaderField("content-type").isNull());
    EXPECT_TRUE(response.valueForHTTPHeaderField("content-type").isEmpty());
    EXPECT_TRUE(response.valueForHTTPHeaderField("Content-Length").isNull());

    HTTPURLResponse bare(QUrl("http://h/"), 200, std::nullopt);
    EXPECT_FALSE(bare.allHeaderFields().has_value());
    EXPECT_TRUE(bare.valueForHTTPHeaderField("Content-Type").isNull());
}
