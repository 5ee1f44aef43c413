#include "fetch/PercentEscapes.h"

#include <gtest/gtest.h>

namespace {
QString escaped(const QString& s, PercentEscapes::Encoding e)
{
    auto r = PercentEscapes::stringByAddingPercentEscapes(s, e);
    return r ? *r : QStringLiteral("<none>");
}
} // namespace

TEST(PercentEscapes, SpacesAndAccentsBecomeUtf8Escapes)
{
    EXPECT_EQ(escaped(QString::fromUtf8("http://h/été 2024.html"), PercentEscapes::UTF8),
              QStringLiteral("http://h/%C3%A9t%C3%A9%202024.html"));
}

TEST(PercentEscapes, UrlSyntaxAndExistingEscapesAreKept)
{
    const QString url = QStringLiteral("https://u:p@h:8080/a/b;c?x=1&y=%2F#frag[]!$'()*+,=~_.-");
    EXPECT_EQ(escaped(url, PercentEscapes::UTF8), url);
}

TEST(PercentEscapes, CharactersNotAllowedInUrlsAreEscaped)
{
    EXPECT_EQ(escaped(QStringLiteral("a\"<>\\^`{|}b\tc"), PercentEscapes::UTF8),
              QStringLiteral("a%22%3C%3E%5C%5E%60%7B%7C%7Db%09c"));
}

TEST(PercentEscapes, MacOSRomanEscapesUseTheTableBytes)
{
    EXPECT_EQ(escaped(QString::fromUtf8("/é €"), PercentEscapes::MacOSRoman), QStringLiteral("/%8E%20%DB"));
}

TEST(PercentEscapes, UnrepresentableStringsGiveNothing)
{
    QString lone = QStringLiteral("/a");
    lone.append(QChar(0xD800)); // a high surrogate with no low one
    EXPECT_FALSE(PercentEscapes::stringByAddingPercentEscapes(lone, PercentEscapes::UTF8).has_value());
    EXPECT_FALSE(PercentEscapes::stringByAddingPercentEscapes(lone, PercentEscapes::MacOSRoman).has_value());
    EXPECT_FALSE(
        PercentEscapes::stringByAddingPercentEscapes(QString::fromUtf8("/\xE4\xB8\xAD"), PercentEscapes::MacOSRoman)
            .has_value());
    EXPECT_EQ(escaped(QString::fromUtf8("/\xE4\xB8\xAD"), PercentEscapes::UTF8), QStringLiteral("/%E4%B8%AD"));
}
