#include "html/WebSrcset.h"

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// A valid non-negative integer above zero ("100"); the value is not needed.
bool isPositiveInteger(QStringView number)
{
    bool nonZero = false;
    for (QChar c : number) {
        if (!isDigit(c))
            return false;
        nonZero = nonZero || c != u'0';
    }
    return !number.isEmpty() && nonZero;
}

// A valid floating-point number that is not negative ("1", "1.5", ".5e1").
bool isDensity(QStringView number)
{
    qsizetype i = 0;
    const qsizetype n = number.size();
    bool negative = false;
    if (i < n && number[i] == u'-') {
        negative = true;
        ++i;
    }
    qsizetype digits = 0;
    while (i < n && isDigit(number[i])) {
        ++i;
        ++digits;
    }
    bool nonZero = false;
    for (qsizetype k = 0; k < i; ++k)
        nonZero = nonZero || (isDigit(number[k]) && number[k] != u'0');
    if (i < n && number[i] == u'.') {
        ++i;
        qsizetype fraction = 0;
        while (i < n && isDigit(number[i])) {
            nonZero = nonZero || number[i] != u'0';
            ++i;
            ++fraction;
        }
        if (fraction == 0)
            return false;
        digits += fraction;
    }
    if (digits == 0)
        return false;
    if (i < n && (number[i] == u'e' || number[i] == u'E')) {
        ++i;
        if (i < n && (number[i] == u'-' || number[i] == u'+'))
            ++i;
        qsizetype exponent = 0;
        while (i < n && isDigit(number[i])) {
            ++i;
            ++exponent;
        }
        if (exponent == 0)
            return false;
    }
    return i == n && !(negative && nonZero);
}

bool descriptorsAreValid(const QList<QStringView>& descriptors)
{
    bool width = false;
    bool density = false;
    bool height = false;
    for (QStringView descriptor : descriptors) {
        const QChar unit = descriptor.back();
        const QStringView number = descriptor.chopped(1);
        if (unit == u'w') {
            if (width || density || !isPositiveInteger(number))
                return false;
            width = true;
        } else if (unit == u'x') {
            if (width || density || height || !isDensity(number))
                return false;
            density = true;
        } else if (unit == u'h') {
            if (height || density || !isPositiveInteger(number))
                return false;
            height = true;
        } else {
            return false;
        }
    }
    return !height || width;
}

} // namespace

QStringList WebSrcset::urls(QStringView srcset)
{
    QStringList found;
    const qsizetype n = srcset.size();
    qsizetype at = 0;
    while (true) {
        while (at < n && (isBlank(srcset[at]) || srcset[at] == u','))
            ++at;
        if (at >= n)
            return found;
        const qsizetype urlStart = at;
        while (at < n && !isBlank(srcset[at]))
            ++at;
        QStringView url = srcset.sliced(urlStart, at - urlStart);
        QList<QStringView> descriptors;
        if (url.endsWith(u',')) {
            while (url.endsWith(u','))
                url.chop(1);
        } else {
            // The descriptors, up to the comma that ends the candidate.
            while (at < n && isBlank(srcset[at]))
                ++at;
            qsizetype start = -1;
            bool inParens = false;
            for (; at < n; ++at) {
                const QChar c = srcset[at];
                if (inParens) {
                    if (c == u')')
                        inParens = false;
                    continue;
                }
                if (isBlank(c) || c == u',') {
                    if (start >= 0)
                        descriptors.append(srcset.sliced(start, at - start));
                    start = -1;
                    if (c == u',') {
                        ++at;
                        break;
                    }
                    continue;
                }
                if (start < 0)
                    start = at;
                if (c == u'(')
                    inParens = true;
            }
            if (at >= n && start >= 0)
                descriptors.append(srcset.sliced(start));
        }
        if (descriptorsAreValid(descriptors))
            found.append(url.toString());
    }
}
