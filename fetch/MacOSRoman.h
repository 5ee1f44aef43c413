#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

// The Mac OS Roman character set: ASCII below 0x80, a fixed table of 128 characters above.
class MacOSRoman {
public:
    // The bytes of the text, or nothing when a character has no Mac OS Roman code.
    static std::optional<QByteArray> encode(const QString& text);

    static QString decode(const QByteArray& bytes);

    // The character of one byte.
    static char16_t characterForByte(unsigned char byte);
};
