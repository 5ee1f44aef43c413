#include "html/WebCharset.h"

#include <QList>
#include <QStringDecoder>

#include <initializer_list>

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

char lower(char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + ('a' - 'A')) : c;
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool startsWithCaseless(QByteArrayView bytes, qsizetype at, const char* word)
{
    for (qsizetype i = 0; word[i]; ++i) {
        if (at + i >= bytes.size() || lower(bytes[at + i]) != word[i])
            return false;
    }
    return true;
}

// One attribute of a tag as the pre-scan reads it: name and value in lower case.
struct Attribute {
    QByteArray name;
    QByteArray value;
};

// The pre-scan's "get an attribute": false at '>' or at the end of the bytes.
bool nextAttribute(QByteArrayView bytes, qsizetype& at, Attribute& attribute)
{
    const qsizetype n = bytes.size();
    while (at < n && (isBlank(bytes[at]) || bytes[at] == '/'))
        ++at;
    if (at >= n || bytes[at] == '>')
        return false;
    attribute = Attribute();
    for (;; ++at) {
        if (at >= n)
            return false;
        const char c = bytes[at];
        if (c == '=' && !attribute.name.isEmpty()) {
            ++at;
            break;
        }
        if (isBlank(c)) {
            while (at < n && isBlank(bytes[at]))
                ++at;
            if (at >= n)
                return false;
            if (bytes[at] != '=')
                return true;
            ++at;
            break;
        }
        if (c == '/' || c == '>')
            return true;
        attribute.name.append(lower(c));
    }
    while (at < n && isBlank(bytes[at]))
        ++at;
    if (at >= n)
        return false;
    const char first = bytes[at];
    if (first == '"' || first == '\'') {
        for (++at; at < n; ++at) {
            if (bytes[at] == first) {
                ++at;
                return true;
            }
            attribute.value.append(lower(bytes[at]));
        }
        return false;
    }
    if (first == '>')
        return true;
    for (; at < n; ++at) {
        const char c = bytes[at];
        if (isBlank(c) || c == '>')
            return true;
        attribute.value.append(lower(c));
    }
    return false;
}

// What a <meta> tag declares, from just after "<meta"; "" when it declares nothing.
QByteArray labelOfMeta(QByteArrayView bytes, qsizetype& at)
{
    QList<QByteArray> seen;
    bool gotPragma = false;
    int needPragma = -1; // unknown, no, yes
    QByteArray charset;
    Attribute attribute;
    while (nextAttribute(bytes, at, attribute)) {
        if (seen.contains(attribute.name))
            continue;
        seen.append(attribute.name);
        if (attribute.name == "http-equiv") {
            if (attribute.value == "content-type")
                gotPragma = true;
        } else if (attribute.name == "content") {
            if (charset.isEmpty()) {
                const QByteArray label = WebCharset::labelFromContentType(attribute.value);
                if (!label.isEmpty()) {
                    charset = label;
                    needPragma = 1;
                }
            }
        } else if (attribute.name == "charset") {
            charset = attribute.value;
            needPragma = 0;
        }
    }
    if (needPragma == -1 || (needPragma == 1 && !gotPragma))
        return QByteArray();
    return charset.trimmed();
}

// Past the attributes of a tag other than <meta>.
void skipTag(QByteArrayView bytes, qsizetype& at)
{
    while (at < bytes.size() && !isBlank(bytes[at]) && bytes[at] != '>')
        ++at;
    Attribute ignored;
    while (nextAttribute(bytes, at, ignored)) {
    }
}

} // namespace

QByteArray WebCharset::labelFromContentType(QByteArrayView value)
{
    qsizetype at = 0;
    const qsizetype n = value.size();
    while (at < n) {
        qsizetype found = -1;
        for (qsizetype i = at; i + 7 <= n; ++i) {
            if (startsWithCaseless(value, i, "charset")) {
                found = i;
                break;
            }
        }
        if (found < 0)
            return QByteArray();
        at = found + 7;
        while (at < n && isBlank(value[at]))
            ++at;
        if (at >= n || value[at] != '=')
            continue;
        ++at;
        while (at < n && isBlank(value[at]))
            ++at;
        if (at >= n)
            return QByteArray();
        const char quote = value[at];
        if (quote == '"' || quote == '\'') {
            const qsizetype end = value.indexOf(quote, at + 1);
            if (end < 0)
                return QByteArray();
            return value.sliced(at + 1, end - at - 1).toByteArray();
        }
        qsizetype end = at;
        while (end < n && !isBlank(value[end]) && value[end] != ';')
            ++end;
        return value.sliced(at, end - at).toByteArray();
    }
    return QByteArray();
}

QByteArray WebCharset::labelFromMeta(QByteArrayView head)
{
    const QByteArrayView bytes = head.first(qMin(head.size(), kScanLength));
    const qsizetype n = bytes.size();
    qsizetype at = 0;
    while (at < n) {
        if (bytes[at] != '<') {
            ++at;
            continue;
        }
        if (startsWithCaseless(bytes, at, "<!--")) {
            const qsizetype end = bytes.indexOf("-->", at + 2);
            if (end < 0)
                return QByteArray();
            at = end + 3;
        } else if (startsWithCaseless(bytes, at, "<meta") && at + 5 < n
                   && (isBlank(bytes[at + 5]) || bytes[at + 5] == '/')) {
            at += 5;
            const QByteArray label = labelOfMeta(bytes, at);
            if (!label.isEmpty())
                return label;
        } else if (startsWithCaseless(bytes, at, "<body") && at + 5 < n
                   && (isBlank(bytes[at + 5]) || bytes[at + 5] == '>' || bytes[at + 5] == '/')) {
            // What the head does not declare, the page does not: the body's text is no
            // declaration even when it reads like one.
            return QByteArray();
        } else if (at + 1 < n && (isLetter(bytes[at + 1]) || (bytes[at + 1] == '/' && at + 2 < n && isLetter(bytes[at + 2])))) {
            ++at;
            skipTag(bytes, at);
        } else if (at + 1 < n && (bytes[at + 1] == '!' || bytes[at + 1] == '/' || bytes[at + 1] == '?')) {
            const qsizetype end = bytes.indexOf('>', at + 1);
            if (end < 0)
                return QByteArray();
            at = end + 1;
        } else {
            ++at;
        }
    }
    return QByteArray();
}

QByteArray WebCharset::encodingForLabel(QByteArrayView label)
{
    const QByteArray name = label.trimmed().toByteArray().toLower();
    if (name.isEmpty())
        return QByteArray();
    if (name == "utf-8" || name == "utf8" || name == "unicode-1-1-utf-8")
        return QByteArrayLiteral("UTF-8");
    // Browsers read every Latin-1 and ASCII label as windows-1252, whose 0x80-0x9F are
    // printable; x-user-defined is read likewise here.
    for (const char* latin : {"ascii", "us-ascii", "iso-8859-1", "iso8859-1", "iso_8859-1", "iso88591", "latin1",
                              "l1", "cp1252", "x-cp1252", "cp819", "ibm819", "iso-ir-100", "csisolatin1",
                              "iso_8859-1:1987", "ansi_x3.4-1968", "windows-1252", "x-user-defined"}) {
        if (name == latin)
            return QByteArrayLiteral("windows-1252");
    }
    if (name == "utf-16" || name == "utf-16le" || name == "unicode" || name == "ucs-2")
        return QByteArrayLiteral("UTF-16LE");
    if (name == "utf-16be" || name == "unicodefffe")
        return QByteArrayLiteral("UTF-16BE");
    const QStringDecoder decoder(name.constData());
    return decoder.isValid() ? name : QByteArray();
}

QByteArray WebCharset::encodingOf(QByteArrayView page, QByteArrayView transportCharset)
{
    if (page.startsWith("\xEF\xBB\xBF"))
        return QByteArrayLiteral("UTF-8");
    if (page.startsWith("\xFE\xFF"))
        return QByteArrayLiteral("UTF-16BE");
    if (page.startsWith("\xFF\xFE"))
        return QByteArrayLiteral("UTF-16LE");
    const QByteArray fromTransport = encodingForLabel(transportCharset);
    if (!fromTransport.isEmpty())
        return fromTransport;
    const QByteArray fromMeta = encodingForLabel(labelFromMeta(page));
    // A page cannot declare itself UTF-16 from inside: its own bytes would not have read.
    if (fromMeta.startsWith("UTF-16"))
        return QByteArrayLiteral("UTF-8");
    return fromMeta.isEmpty() ? QByteArrayLiteral("UTF-8") : fromMeta;
}
