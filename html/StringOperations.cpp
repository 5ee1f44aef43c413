#include "html/StringOperations.h"

#include "html/RangeException.h"

QString stringByTrim(const QString& s)
{
    // QChar::isSpace covers the Unicode separators plus U+0009..U+000D and U+0085, the same
    // set as "white space and newlines".
    if (s.isNull())
        return s;
    return s.trimmed();
}

QString stringWithoutLastSlash(const QString& s)
{
    if (s.isEmpty())
        throw RangeException("stringWithoutLastSlash: empty string");
    if (s.endsWith(QLatin1Char('/')))
        return s.left(s.length() - 1);
    return s;
}

bool isEqualCaseInsensitive(const QString& a, const QString& b)
{
    if (QString::compare(a, b, Qt::CaseInsensitive) == 0)
        return true;
    return QString::compare(a.normalized(QString::NormalizationForm_D),
                            b.normalized(QString::NormalizationForm_D), Qt::CaseInsensitive)
        == 0;
}

bool hasPrefixCaseInsensitive(const QString& s, const QString& prefix)
{
    if (s.length() < prefix.length())
        return false;
    return isEqualCaseInsensitive(s.left(prefix.length()), prefix);
}

QString stringByRemovingOccurrences(const QString& s, const QString& what)
{
    return stringByReplacingOccurrences(s, what, QString());
}

QString stringByReplacingOccurrences(const QString& s, const QString& target, const QString& replacement)
{
    // QString::replace with an empty target would insert between every character.
    if (s.isNull() || target.isEmpty())
        return s;
    QString result = s;
    result.replace(target, replacement, Qt::CaseSensitive);
    return result;
}

QString canonicalComparisonForm(const QString& url)
{
    QString s = url;
    s.remove(QStringLiteral("www."));
    s.replace(QStringLiteral("https:"), QStringLiteral("http:"));
    if (s.endsWith(QLatin1Char('/')))
        s.chop(1);
    return s;
}
