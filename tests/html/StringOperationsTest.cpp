#include "html/CStringDecoding.h"
#include "html/RangeException.h"
#include "html/StringOperations.h"

#include <gtest/gtest.h>

namespace {

TEST(StringByTrimTest, RemovesWhiteSpaceAndLineEndsAtBothEnds)
{
    EXPECT_EQ(stringByTrim(QStringLiteral(" \t\r\n Hello world \n\t ")), QStringLiteral("Hello world"));
}

TEST(StringByTrimTest, RemovesUnicodeSeparators)
{
    // No-break space, line separator, ideographic space, next line.
    const QString text = QString(QChar(0x00A0)) + QChar(0x2028) + QStringLiteral("Caf\u00e9") + QChar(0x3000)
        + QChar(0x0085);
    EXPECT_EQ(stringByTrim(text), QStringLiteral("Caf\u00e9"));
}

TEST(StringByTrimTest, KeepsInnerWhiteSpaceAndOtherCharacters)
{
    EXPECT_EQ(stringByTrim(QStringLiteral("a \n b")), QStringLiteral("a \n b"));
    EXPECT_EQ(stringByTrim(QStringLiteral("-x-")), QStringLiteral("-x-"));
}

TEST(StringByTrimTest, BlankStringBecomesEmpty)
{
    EXPECT_TRUE(stringByTrim(QStringLiteral(" \n ")).isEmpty());
    EXPECT_TRUE(stringByTrim(QString()).isNull());
}

TEST(StringWithoutLastSlashTest, RemovesOneTrailingSlash)
{
    EXPECT_EQ(stringWithoutLastSlash(QStringLiteral("example.com/")), QStringLiteral("example.com"));
    EXPECT_EQ(stringWithoutLastSlash(QStringLiteral("a//")), QStringLiteral("a/"));
    EXPECT_EQ(stringWithoutLastSlash(QStringLiteral("/")), QStringLiteral(""));
}

TEST(StringWithoutLastSlashTest, LeavesOtherStringsAlone)
{
    EXPECT_EQ(stringWithoutLastSlash(QStringLiteral("example.com")), QStringLiteral("example.com"));
    EXPECT_EQ(stringWithoutLastSlash(QStringLiteral("/a")), QStringLiteral("/a"));
}

TEST(StringWithoutLastSlashTest, EmptyStringIsARangeFault)
{
    EXPECT_THROW(stringWithoutLastSlash(QStringLiteral("")), RangeException);
    EXPECT_THROW(stringWithoutLastSlash(QString()), RangeException);
}

TEST(CaseInsensitiveTest, PrefixOverThePrefixLength)
{
    EXPECT_TRUE(hasPrefixCaseInsensitive(QStringLiteral("HTTP://x"), QStringLiteral("http://")));
    EXPECT_TRUE(hasPrefixCaseInsensitive(QStringLiteral("http://"), QStringLiteral("http://")));
    EXPECT_FALSE(hasPrefixCaseInsensitive(QStringLiteral("http:/"), QStringLiteral("http://")));
    EXPECT_FALSE(hasPrefixCaseInsensitive(QStringLiteral("ftp://x"), QStringLiteral("http://")));
    EXPECT_TRUE(hasPrefixCaseInsensitive(QStringLiteral("anything"), QStringLiteral("")));
    EXPECT_FALSE(hasPrefixCaseInsensitive(QString(), QStringLiteral("a")));
}

TEST(CaseInsensitiveTest, NonAsciiLettersCompareWithoutCase)
{
    EXPECT_TRUE(hasPrefixCaseInsensitive(QStringLiteral("\u00c9T\u00c9/x"), QStringLiteral("\u00e9t\u00e9")));
    EXPECT_TRUE(isEqualCaseInsensitive(QStringLiteral("\u0416\u0443\u043a"), QStringLiteral("\u0436\u0423\u041a")));
    EXPECT_FALSE(isEqualCaseInsensitive(QStringLiteral("\u00e9"), QStringLiteral("e")));
}

TEST(CaseInsensitiveTest, CanonicallyEquivalentFormsAreEqual)
{
    const QString composed = QStringLiteral("caf\u00e9");
    const QString decomposed = QStringLiteral("cafe\u0301");
    EXPECT_TRUE(isEqualCaseInsensitive(composed, decomposed));
    EXPECT_TRUE(isEqualCaseInsensitive(QStringLiteral("CAFE\u0301"), composed));
    // Same length, different code points: the angstrom sign and A with ring above.
    EXPECT_TRUE(hasPrefixCaseInsensitive(QStringLiteral("\u212b.com/x"), QStringLiteral("\u00c5.com")));
    // A decomposed form is longer, so a prefix of the composed length cuts it short.
    EXPECT_FALSE(hasPrefixCaseInsensitive(decomposed, composed));
}

TEST(ReplaceTest, CaseSensitiveEveryOccurrence)
{
    EXPECT_EQ(stringByRemovingOccurrences(QStringLiteral("www.a.www.b.WWW.c"), QStringLiteral("www.")),
              QStringLiteral("a.b.WWW.c"));
    EXPECT_EQ(stringByReplacingOccurrences(QStringLiteral("http:/a?u=http://b"), QStringLiteral("http:/"),
                                           QStringLiteral("http://")),
              QStringLiteral("http://a?u=http:///b"));
}

TEST(ReplaceTest, EmptyTargetIsNeverFound)
{
    EXPECT_EQ(stringByReplacingOccurrences(QStringLiteral("abc"), QStringLiteral(""), QStringLiteral("X")),
              QStringLiteral("abc"));
}

TEST(CStringDecodingTest, NullAndEmpty)
{
    EXPECT_TRUE(textFromCString(nullptr).isNull());
    const QString empty = textFromCString("");
    EXPECT_TRUE(empty.isEmpty());
    EXPECT_FALSE(empty.isNull());
}

TEST(CStringDecodingTest, ValidUtf8)
{
    EXPECT_EQ(textFromCString("caf\xc3\xa9 \xe2\x82\xac"), QStringLiteral("caf\u00e9 \u20ac"));
}

TEST(CStringDecodingTest, InvalidUtf8FallsBackToOneCharacterPerByte)
{
    // Mac OS Roman: 0xE9 is E with grave, 0x8E e with acute, 0xFF caron.
    const QString text = textFromCString("caf\xe9 \x8e\xff");
    EXPECT_EQ(text.length(), 7);
    EXPECT_EQ(text, QStringLiteral("caf\u00c8 \u00e9\u02c7"));
}

} // namespace
