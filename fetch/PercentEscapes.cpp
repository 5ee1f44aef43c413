#include "fetch/PercentEscapes.h"

#include "fetch/MacOSRoman.h"

#include <QByteArray>
#include <cstring>

namespace {

bool hasLoneSurrogate(const QString& s)
{
    for (qsizetype i = 0; i < s.size(); ++i) {
        const QChar c = s[i];
        if (c.isHighSurrogate()) {
            if (i + 1 >= s.size() || !s[i + 1].isLowSurrogate())
                return true;
            ++i;
        } else if (c.isLowSurrogate()) {
            return true;
        }
    }
    return false;
}

} // namespace

bool PercentEscapes::isLegalURLByte(unsigned char byte)
{
    if ((byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9'))
        return true;
    return byte != 0 && std::strchr("-._~:/?#[]@!$&'()*+,;=%", byte) != nullptr;
}

std::optional<QString> PercentEscapes::stringByAddingPercentEscapes(const QString& string, Encoding encoding)
{
    QByteArray bytes;
    if (encoding == UTF8) {
        if (hasLoneSurrogate(string))
            return std::nullopt;
        bytes = string.toUtf8();
    } else {
        auto encoded = MacOSRoman::encode(string);
        if (!encoded)
            return std::nullopt;
        bytes = *encoded;
    }

    static const char hex[] = "0123456789ABCDEF";
    QString escaped;
    escaped.reserve(bytes.size());
    for (char c : bytes) {
        const auto b = static_cast<unsigned char>(c);
        if (isLegalURLByte(b)) {
            escaped.append(QLatin1Char(c));
        } else {
            escaped.append(QLatin1Char('%'));
            escaped.append(QLatin1Char(hex[b >> 4]));
            escaped.append(QLatin1Char(hex[b & 0xF]));
        }
    }
    return escaped;
}
