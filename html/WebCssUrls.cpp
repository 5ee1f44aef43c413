#include "html/WebCssUrls.h"

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\n' || c == u'\f' || c == u'\r';
}

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

char32_t hexValue(QChar c)
{
    if (c <= u'9')
        return c.unicode() - u'0';
    return (c.unicode() | 0x20) - u'a' + 10;
}

bool isNameCharacter(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || (c >= u'0' && c <= u'9') || c == u'-' || c == u'_'
        || c.unicode() >= 0x80;
}

// A backslash escape starting at `at` (the backslash): the character it stands for, with `at`
// left after it. A backslash before a newline or at the end stands for nothing.
void appendEscape(QStringView css, qsizetype& at, QString& out)
{
    const qsizetype n = css.size();
    ++at;
    if (at >= n)
        return;
    if (!isHexDigit(css[at])) {
        if (css[at] != u'\n' && css[at] != u'\r' && css[at] != u'\f')
            out.append(css[at]);
        ++at;
        return;
    }
    char32_t code = 0;
    for (int digits = 0; digits < 6 && at < n && isHexDigit(css[at]); ++digits, ++at)
        code = code * 16 + hexValue(css[at]);
    if (at < n && isBlank(css[at]))
        ++at;
    if (code == 0 || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        code = 0xFFFD;
    out.append(QString::fromUcs4(&code, 1));
}

// A quoted string starting at its quote; false when a newline breaks it (a bad string).
bool readString(QStringView css, qsizetype& at, QString& out)
{
    const qsizetype n = css.size();
    const QChar quote = css[at];
    ++at;
    while (at < n) {
        const QChar c = css[at];
        if (c == quote) {
            ++at;
            return true;
        }
        if (c == u'\n' || c == u'\r' || c == u'\f')
            return false;
        if (c == u'\\')
            appendEscape(css, at, out);
        else {
            out.append(c);
            ++at;
        }
    }
    return true;
}

// Past the ')' that closes a malformed url(.
void skipBadUrl(QStringView css, qsizetype& at)
{
    while (at < css.size() && css[at] != u')') {
        if (css[at] == u'\\')
            at += 2;
        else
            ++at;
    }
    ++at;
}

// The argument of url( starting just after the parenthesis; false when it is malformed.
bool readUrl(QStringView css, qsizetype& at, QString& out)
{
    const qsizetype n = css.size();
    while (at < n && isBlank(css[at]))
        ++at;
    if (at < n && (css[at] == u'"' || css[at] == u'\'')) {
        if (!readString(css, at, out)) {
            skipBadUrl(css, at);
            return false;
        }
        while (at < n && isBlank(css[at]))
            ++at;
        if (at < n && css[at] != u')') {
            skipBadUrl(css, at);
            return false;
        }
        ++at;
        return true;
    }
    while (at < n) {
        const QChar c = css[at];
        if (c == u')') {
            ++at;
            return true;
        }
        if (isBlank(c)) {
            while (at < n && isBlank(css[at]))
                ++at;
            if (at >= n || css[at] == u')') {
                ++at;
                return true;
            }
            skipBadUrl(css, at);
            return false;
        }
        if (c == u'"' || c == u'\'' || c == u'(' || c.unicode() < 0x20 || c.unicode() == 0x7F) {
            skipBadUrl(css, at);
            return false;
        }
        if (c == u'\\') {
            if (at + 1 < n && (css[at + 1] == u'\n' || css[at + 1] == u'\r' || css[at + 1] == u'\f')) {
                skipBadUrl(css, at);
                return false;
            }
            appendEscape(css, at, out);
        } else {
            out.append(c);
            ++at;
        }
    }
    return true;
}

} // namespace

QStringList WebCssUrls::urls(QStringView css)
{
    QStringList found;
    const qsizetype n = css.size();
    qsizetype at = 0;
    bool afterImport = false;
    while (at < n) {
        const QChar c = css[at];
        if (c == u'/' && at + 1 < n && css[at + 1] == u'*') {
            const qsizetype end = css.indexOf(u"*/", at + 2);
            at = end < 0 ? n : end + 2;
            continue;
        }
        if (isBlank(c)) {
            ++at;
            continue;
        }
        if (c == u'"' || c == u'\'') {
            QString text;
            const bool good = readString(css, at, text);
            if (good && afterImport && !text.isEmpty())
                found.append(text);
            afterImport = false;
            continue;
        }
        if (c == u'@') {
            qsizetype end = at + 1;
            while (end < n && isNameCharacter(css[end]))
                ++end;
            afterImport = css.sliced(at + 1, end - at - 1).compare(u"import", Qt::CaseInsensitive) == 0;
            at = end;
            continue;
        }
        if (isNameCharacter(c) || c == u'\\') {
            // A name, escapes included; only "url" followed by '(' matters.
            QString name;
            while (at < n && (isNameCharacter(css[at]) || css[at] == u'\\')) {
                if (css[at] == u'\\')
                    appendEscape(css, at, name);
                else
                    name.append(css[at++]);
            }
            if (at < n && css[at] == u'(' && name.compare(u"url", Qt::CaseInsensitive) == 0) {
                ++at;
                QString url;
                if (readUrl(css, at, url) && !url.isEmpty())
                    found.append(url);
            }
            afterImport = false;
            continue;
        }
        afterImport = false;
        ++at;
    }
    return found;
}
