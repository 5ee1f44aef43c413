// The text conversions applied to what servers and pages send: percent-escaping of URL
// strings (UTF-8, then the Mac OS Roman fallback, as the crawl forms a URL), the Mac OS Roman
// table both ways, and the decoding of libxml2's bytes (UTF-8, Mac OS Roman when invalid).
// Checks the round trips and that the two Mac OS Roman tables agree.
//
// Input: the first byte selects the text form of the string to escape (odd: UTF-8, even: raw
// UTF-16 code units, lone surrogates included); the bytes after it are also decoded as they
// come.

#include "FuzzSupport.h"

#include "fetch/MacOSRoman.h"
#include "fetch/PercentEscapes.h"
#include "fetch/SynchronizedWebCall.h"
#include "html/CStringDecoding.h"

#include <QUrl>

#include <cstdint>

using fuzz::check;

namespace {

bool isLatinAscii(const QString& s)
{
    for (QChar c : s) {
        if (c.unicode() >= 0x80)
            return false;
    }
    return true;
}

void checkEscaped(const QString& text, const std::optional<QString>& escaped, const QByteArray& encoded)
{
    check(isLatinAscii(*escaped), "escaped string is not ASCII", *escaped);
    for (QChar c : *escaped)
        check(PercentEscapes::isLegalURLByte(static_cast<unsigned char>(c.unicode())), "illegal byte kept", *escaped);
    // Already escaped text comes out unchanged.
    const auto twice = PercentEscapes::stringByAddingPercentEscapes(*escaped, PercentEscapes::UTF8);
    check(twice && *twice == *escaped, "escaping is not idempotent", text);
    // Without a "%" of its own, unescaping gives back the encoded bytes.
    if (!text.contains(QLatin1Char('%')))
        check(QByteArray::fromPercentEncoding(escaped->toLatin1()) == encoded, "escape round trip", text);
}

void fuzzEscapes(const QString& text)
{
    const auto utf8 = PercentEscapes::stringByAddingPercentEscapes(text, PercentEscapes::UTF8);
    bool lone = false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            ++i;
        else if (text[i].isSurrogate())
            lone = true;
    }
    check(bool(utf8) == !lone, "UTF-8 escaping refused a writable string or took a lone surrogate", text);
    if (utf8)
        checkEscaped(text, utf8, text.toUtf8());

    const auto roman = MacOSRoman::encode(text);
    const auto romanEscaped = PercentEscapes::stringByAddingPercentEscapes(text, PercentEscapes::MacOSRoman);
    check(bool(roman) == bool(romanEscaped), "Mac OS Roman escaping and encoding disagree", text);
    if (roman) {
        check(roman->size() == text.size(), "Mac OS Roman is one byte a character", text);
        check(MacOSRoman::decode(*roman) == text, "Mac OS Roman round trip", text);
        checkEscaped(text, romanEscaped, *roman);
    }

    // The URL the crawl forms from the string: the UTF-8 escaping's when it makes one.
    const auto url = SynchronizedWebCall::URLFromString(text);
    check(SynchronizedWebCall::URLFromString(text) == url, "URL forming is not deterministic", text);
    if (url) {
        check(url->isValid(), "invalid URL formed", text);
        (void)url->host();
        // The URL as the crawl writes it down (the fetch's final URL) forms a URL again.
        const QString written = url->toString(QUrl::FullyEncoded);
        if (!written.isEmpty())
            check(bool(SynchronizedWebCall::URLFromString(written)), "the written-out URL makes no URL",
                  text + QStringLiteral(" -> ") + written);
    }
}

void fuzzBytes(const QByteArray& bytes)
{
    // Every byte has one character and back.
    const QString roman = MacOSRoman::decode(bytes);
    check(roman.size() == bytes.size(), "Mac OS Roman decode length");
    const auto back = MacOSRoman::encode(roman);
    check(back && *back == bytes, "Mac OS Roman bytes round trip");
    check(macRomanToString(bytes) == roman, "the two Mac OS Roman tables disagree");

    const QString text = textFromBytes(bytes);
    check(!text.isNull(), "bytes gave a null text");
    if (bytes.isEmpty())
        check(text.isEmpty(), "no bytes gave text");
    else if (!bytes.isValidUtf8())
        check(text == roman, "invalid UTF-8 not read as Mac OS Roman");
    else if (!bytes.startsWith("\xEF\xBB\xBF"))
        check(text == QString::fromUtf8(bytes), "valid UTF-8 misread");

    // libxml2 hands over C strings: they end at the first zero byte.
    const QByteArray cString(bytes.constData(), qstrnlen(bytes.constData(), bytes.size()));
    check(textFromCString(cString.constData()) == textFromBytes(cString), "C string and bytes disagree");
    check(textFromCString(nullptr).isNull(), "null C string gave text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray payload(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    fuzz::runInput([&] {
        fuzzBytes(payload);
        fuzzEscapes(fuzz::textFrom(data[0], payload));
    });
    return 0;
}
