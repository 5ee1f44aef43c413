#include "html/RobotsTxt.h"

#include "html/RobotEntryFullURL.h"
#include "html/RobotEntryJokerURL.h"
#include "html/StringOperations.h"

#include <QStringList>

namespace {

bool isLineEnd(QChar c)
{
    const char16_t u = c.unicode();
    return (u >= 0x000A && u <= 0x000D) || u == 0x0085 || u == 0x2028 || u == 0x2029;
}

// Every line-end character ends a line, so CR LF leaves an empty line between the two.
QStringList splitLines(const QString& text)
{
    QStringList lines;
    qsizetype start = 0;
    for (qsizetype i = 0; i < text.length(); ++i) {
        if (isLineEnd(text.at(i))) {
            lines.append(text.mid(start, i - start));
            start = i + 1;
        }
    }
    lines.append(text.mid(start));
    return lines;
}

} // namespace

void loadRobotsTxtToArray(const QString& robotsTxt, QList<RobotEntryPtr>& array)
{
    static const QString kDisallow = QStringLiteral("Disallow:");
    for (const QString& rawLine : splitLines(robotsTxt)) {
        const QString line = stringByTrim(rawLine);
        if (!hasPrefixCaseInsensitive(line, kDisallow))
            continue;
        // The value ends at the next ":" ("/cgi-bin:old" keeps "/cgi-bin"); a "#" comment
        // after it stays part of the value.
        const QStringList pieces = line.split(QLatin1Char(':'));
        const QString value = stringByTrim(pieces.value(1));
        // "/" alone (the whole site) and empty values make no rule.
        if (value.length() < 2 || value.at(0) != QLatin1Char('/'))
            continue;
        if (value.contains(QLatin1Char('*')))
            array.append(RobotEntryJokerURL::initWithEntryValue(value));
        else
            array.append(RobotEntryFullURL::initWithEntryValue(value));
    }
}

bool isAllowedURLWithArrayOfDisallowed(const QString& path, const QList<RobotEntryPtr>& array)
{
    for (const RobotEntryPtr& rule : array) {
        if (rule && rule->isURLDisallowed(path))
            return false;
    }
    return true;
}
