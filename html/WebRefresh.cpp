#include "html/WebRefresh.h"

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace

QString WebRefresh::target(QStringView content)
{
    const qsizetype n = content.size();
    qsizetype at = 0;
    while (at < n && isBlank(content[at]))
        ++at;
    const qsizetype timeStart = at;
    while (at < n && isDigit(content[at]))
        ++at;
    if (at == timeStart && (at >= n || content[at] != u'.'))
        return QString();
    while (at < n && (isDigit(content[at]) || content[at] == u'.'))
        ++at;
    if (at >= n)
        return QString();
    if (content[at] != u';' && content[at] != u',' && !isBlank(content[at]))
        return QString();
    while (at < n && isBlank(content[at]))
        ++at;
    if (at < n && (content[at] == u';' || content[at] == u','))
        ++at;
    while (at < n && isBlank(content[at]))
        ++at;
    if (at >= n)
        return QString();
    // An optional "url =" before the target; without the '=' the letters are the target's own.
    qsizetype urlStart = at;
    if (at + 3 <= n && content.sliced(at, 3).compare(u"url", Qt::CaseInsensitive) == 0) {
        qsizetype after = at + 3;
        while (after < n && isBlank(content[after]))
            ++after;
        if (after < n && content[after] == u'=') {
            ++after;
            while (after < n && isBlank(content[after]))
                ++after;
            urlStart = after;
        }
    }
    QStringView url = content.sliced(urlStart);
    if (!url.isEmpty() && (url.front() == u'"' || url.front() == u'\'')) {
        const QChar quote = url.front();
        url = url.sliced(1);
        const qsizetype end = url.indexOf(quote);
        if (end >= 0)
            url.truncate(end);
    }
    return url.toString();
}
