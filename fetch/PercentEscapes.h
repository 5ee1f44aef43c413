#pragma once

#include <QString>

#include <optional>

// Turns a string typed or found in a page into one that may stand in a URL: every character
// that is not allowed in a URL becomes %XX of its bytes in the chosen encoding. Characters
// with a meaning in URLs (":/?#[]@!$&'()*+,;=") and "%" itself are kept, so an already
// escaped URL comes out unchanged.
class PercentEscapes {
public:
    enum Encoding {
        UTF8,
        MacOSRoman,
    };

    // Nothing when the string cannot be written in the encoding (a lone surrogate in UTF-8,
    // a character outside the table in Mac OS Roman).
    static std::optional<QString> stringByAddingPercentEscapes(const QString& string, Encoding encoding);

    // Whether an ASCII byte may stand in a URL as it is.
    static bool isLegalURLByte(unsigned char byte);
};
