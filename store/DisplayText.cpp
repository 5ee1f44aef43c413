#include "store/DisplayText.h"

#include <QRegularExpression>
#include <QVariantList>
#include <QVariantMap>

namespace {

bool isControl(char16_t c, DisplayText::LineBreaks lineBreaks)
{
    if (lineBreaks == DisplayText::LineBreaks::Keep && (c == u'\n' || c == u'\t'))
        return false;
    return c < 0x20 || c == 0x7f || (c >= 0x80 && c <= 0x9f);
}

// The authority's user information: everything between "//" and the last "@" before the
// path, the query, the fragment or a blank.
const QRegularExpression& userInfoPattern()
{
    static const QRegularExpression pattern(QStringLiteral("([A-Za-z][A-Za-z0-9+.\\-]*://)[^/?#\\s]*@"));
    return pattern;
}

} // namespace

QString DisplayText::escapeControls(const QString& text, LineBreaks lineBreaks)
{
    qsizetype i = 0;
    while (i < text.size() && !isControl(text.at(i).unicode(), lineBreaks))
        ++i;
    if (i == text.size())
        return text;
    QString escaped = text.left(i);
    for (; i < text.size(); ++i) {
        const char16_t c = text.at(i).unicode();
        if (isControl(c, lineBreaks))
            escaped += QStringLiteral("\\x%1").arg(uint(c), 2, 16, QLatin1Char('0'));
        else
            escaped += QChar(c);
    }
    return escaped;
}

QString DisplayText::maskUserInfo(const QString& text)
{
    if (!text.contains(QLatin1Char('@')))
        return text;
    QString masked = text;
    masked.replace(userInfoPattern(), QStringLiteral("\\1***@"));
    return masked;
}

QVariant DisplayText::maskUserInfo(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::QString:
        return maskUserInfo(value.toString());
    case QMetaType::QVariantList: {
        QVariantList list = value.toList();
        for (auto& item : list)
            item = maskUserInfo(item);
        return list;
    }
    case QMetaType::QVariantMap: {
        QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            it.value() = maskUserInfo(it.value());
        return map;
    }
    default:
        return value;
    }
}

QString DisplayText::forTerminal(const QString& text, LineBreaks lineBreaks)
{
    return escapeControls(maskUserInfo(text), lineBreaks);
}
