#include "fetch/MacOSRoman.h"

#include <gtest/gtest.h>

TEST(MacOSRoman, AsciiIsKeptAsIs)
{
    auto bytes = MacOSRoman::encode(QStringLiteral("Hello, /world?"));
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(*bytes, QByteArray("Hello, /world?"));
}

TEST(MacOSRoman, AccentedLettersAndSymbolsTakeTheirTableCodes)
{
    auto bytes = MacOSRoman::encode(QString::fromUtf8("é à ç Ä € ™ π"));
    ASSERT_TRUE(bytes.has_value());
    EXPECT_EQ(*bytes, QByteArray("\x8E \x88 \x8D \x80 \xDB \xAA \xB9"));
}

TEST(MacOSRoman, CharactersOutsideTheTableCannotBeEncoded)
{
    EXPECT_FALSE(MacOSRoman::encode(QString::fromUtf8("\xC4\x80")).has_value());        // U+0100
    EXPECT_FALSE(MacOSRoman::encode(QString::fromUtf8("caf\xE2\x82\xAC\xE4\xB8\xAD")).has_value()); // a CJK letter
    EXPECT_FALSE(MacOSRoman::encode(QString::fromUtf8("\xF0\x9F\x98\x80")).has_value()); // an emoji
}

TEST(MacOSRoman, EveryByteDecodesToADistinctCharacterThatEncodesBack)
{
    QByteArray all;
    for (int b = 0; b < 256; ++b)
        all.append(static_cast<char>(b));
    const QString text = MacOSRoman::decode(all);
    ASSERT_EQ(text.size(), 256);
    auto back = MacOSRoman::encode(text);
    ASSERT_TRUE(back.has_value());
    EXPECT_EQ(*back, all);
}

TEST(MacOSRoman, KnownCodesOfTheUpperHalf)
{
    EXPECT_EQ(MacOSRoman::characterForByte(0x80), u'\u00C4');
    EXPECT_EQ(MacOSRoman::characterForByte(0xA5), u'\u2022');
    EXPECT_EQ(MacOSRoman::characterForByte(0xCA), u'\u00A0');
    EXPECT_EQ(MacOSRoman::characterForByte(0xDB), u'\u20AC');
    EXPECT_EQ(MacOSRoman::characterForByte(0xF0), u'\uF8FF');
    EXPECT_EQ(MacOSRoman::characterForByte(0xFF), u'\u02C7');
}
