#include "html/WebUrl.h"

namespace {

bool isAsciiAlpha(QChar c)
{
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}

bool isHexDigit(QChar c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F');
}

int hexValue(QChar c)
{
    if (c <= u'9')
        return c.unicode() - u'0';
    return (c.unicode() | 0x20) - u'a' + 10;
}

bool isUnreserved(int c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' || c == '.'
        || c == '_' || c == '~';
}

// The schemes the URL standard calls special: their URLs always have an authority, and
// browsers read a backslash in them as a slash. file is left out: a crawl never reads it.
bool isSpecialScheme(const QString& scheme)
{
    return scheme == u"http" || scheme == u"https" || scheme == u"ws" || scheme == u"wss" || scheme == u"ftp";
}

// The scheme of a reference in lower case (ALPHA *( ALPHA / DIGIT / "+" / "-" / "." ) ":"),
// with the length of "scheme:"; "" when it is a relative reference.
QString schemeOfReference(const QString& reference, qsizetype* prefixLength)
{
    *prefixLength = 0;
    if (reference.isEmpty() || !isAsciiAlpha(reference.front()))
        return QString();
    for (qsizetype i = 1; i < reference.size(); ++i) {
        const QChar c = reference.at(i);
        if (c == u':') {
            *prefixLength = i + 1;
            return reference.left(i).toLower();
        }
        const bool digit = c >= u'0' && c <= u'9';
        if (!isAsciiAlpha(c) && !digit && c != u'+' && c != u'-' && c != u'.')
            return QString();
    }
    return QString();
}

// Backslashes before the query and the fragment become slashes, as browsers read special URLs.
QString slashesForBackslashes(QString reference)
{
    for (qsizetype i = 0; i < reference.size(); ++i) {
        const QChar c = reference.at(i);
        if (c == u'?' || c == u'#')
            break;
        if (c == u'\\')
            reference[i] = u'/';
    }
    return reference;
}

// What browsers do with a special scheme where RFC 3986 would not: "http:g" against an http
// base is relative ("g"), "https:host/x" against another scheme names the host, and any run
// of slashes before an authority counts as two ("http:///x" is "http://x"). The result is a
// reference RFC 3986 resolution gives the browser's answer for.
QString browserReference(const QUrl& base, const QString& reference)
{
    qsizetype prefix = 0;
    const QString scheme = schemeOfReference(reference, &prefix);
    const QString effective = scheme.isEmpty() ? base.scheme().toLower() : scheme;
    if (!isSpecialScheme(effective))
        return reference;
    QString rest = slashesForBackslashes(reference.mid(prefix));
    const bool twoSlashes = rest.size() >= 2 && rest.at(0) == u'/' && rest.at(1) == u'/';
    if (!scheme.isEmpty() && !twoSlashes && scheme == base.scheme().toLower())
        return rest; // "http:g": relative to an http base
    if (!scheme.isEmpty() || twoSlashes) {
        qsizetype slashes = 0;
        while (slashes < rest.size() && rest.at(slashes) == u'/')
            ++slashes;
        if (!scheme.isEmpty() || slashes > 2)
            rest = QStringLiteral("//") + rest.mid(slashes);
        return scheme.isEmpty() ? rest : scheme + u':' + rest;
    }
    return rest;
}

// RFC 3986 6.2.2.2: escapes of unreserved characters decoded, the hex of the others in upper
// case. A '%' without two hex digits is left as it is (QUrl encodes it as %25 when parsing).
QString normalizedEscapes(const QString& encoded)
{
    if (!encoded.contains(u'%'))
        return encoded;
    QString out;
    out.reserve(encoded.size());
    for (qsizetype i = 0; i < encoded.size(); ++i) {
        const QChar c = encoded.at(i);
        if (c == u'%' && i + 2 < encoded.size() && isHexDigit(encoded.at(i + 1)) && isHexDigit(encoded.at(i + 2))) {
            const int value = hexValue(encoded.at(i + 1)) * 16 + hexValue(encoded.at(i + 2));
            if (isUnreserved(value)) {
                out.append(QChar(value));
            } else {
                out.append(u'%');
                out.append(encoded.at(i + 1).toUpper());
                out.append(encoded.at(i + 2).toUpper());
            }
            i += 2;
        } else {
            out.append(c);
        }
    }
    return out;
}

// RFC 3986 5.2.4 remove_dot_segments.
QString withoutDotSegments(const QString& path)
{
    if (!path.contains(u'.'))
        return path;
    QStringView in(path);
    QString out;
    out.reserve(path.size());
    while (!in.isEmpty()) {
        if (in.startsWith(u"../")) {
            in = in.mid(3);
        } else if (in.startsWith(u"./")) {
            in = in.mid(2);
        } else if (in.startsWith(u"/./")) {
            in = in.mid(2);
        } else if (in == u"/.") {
            in = u"/";
        } else if (in.startsWith(u"/../") || in == u"/..") {
            in = in.size() == 3 ? QStringView(u"/") : in.mid(3);
            const qsizetype last = out.lastIndexOf(u'/');
            out.truncate(last < 0 ? 0 : last);
        } else if (in == u"." || in == u"..") {
            in = QStringView();
        } else {
            const qsizetype next = in.indexOf(u'/', 1);
            const qsizetype length = next < 0 ? in.size() : next;
            out.append(in.left(length));
            in = in.mid(length);
        }
    }
    return out;
}

int defaultPort(const QString& scheme)
{
    if (scheme == u"http")
        return 80;
    if (scheme == u"https")
        return 443;
    return -1;
}

} // namespace

QString WebUrl::cleanReference(const QString& raw)
{
    qsizetype begin = 0;
    qsizetype end = raw.size();
    // The URL parser strips C0 controls and spaces at both ends; ASCII blanks are among them.
    while (begin < end && raw.at(begin).unicode() <= 0x20)
        ++begin;
    while (end > begin && raw.at(end - 1).unicode() <= 0x20)
        --end;
    QString cleaned;
    bool removed = false;
    for (qsizetype i = begin; i < end; ++i) {
        const char16_t c = raw.at(i).unicode();
        if (c == u'\t' || c == u'\n' || c == u'\r') {
            if (!removed) {
                cleaned = raw.mid(begin, i - begin);
                removed = true;
            }
            continue;
        }
        if (removed)
            cleaned.append(QChar(c));
    }
    if (removed)
        return cleaned;
    if (begin == 0 && end == raw.size())
        return raw;
    return raw.mid(begin, end - begin);
}

QUrl WebUrl::resolve(const QUrl& base, const QString& reference)
{
    const QString cleaned = browserReference(base, cleanReference(reference));
    if (cleaned.isEmpty())
        return normalized(base.adjusted(QUrl::RemoveFragment));
    const QUrl relative(cleaned, QUrl::TolerantMode);
    if (!relative.isValid())
        return QUrl();
    if (relative.scheme().isEmpty()) {
        if (!base.isValid())
            return QUrl();
        // Against an opaque base (mailto:, javascript:) only a fragment resolves, as in browsers.
        if (base.authority().isEmpty() && !base.path().startsWith(u'/')) {
            if (!cleaned.startsWith(u'#'))
                return QUrl();
            QUrl withFragment(base);
            withFragment.setFragment(cleaned.mid(1), QUrl::TolerantMode);
            return normalized(withFragment);
        }
    }
    // An absolute reference is its own target; QUrl::resolved would also take the dots out
    // of an opaque path (data:text/plain,a/../b), which is no hierarchy.
    const QUrl resolved = relative.scheme().isEmpty() ? base.resolved(relative) : relative;
    if (!resolved.isValid())
        return QUrl();
    // Browsers refuse a special URL without a host ("https:" alone, "http://").
    if (isSpecialScheme(resolved.scheme().toLower()) && resolved.host().isEmpty())
        return QUrl();
    return normalized(resolved);
}

QUrl WebUrl::normalized(const QUrl& url)
{
    if (!url.isValid() || url.isEmpty())
        return url;
    QUrl result(url);
    const QString scheme = url.scheme().toLower();
    if (scheme != url.scheme())
        result.setScheme(scheme);
    const QString host = url.host(QUrl::FullyEncoded);
    if (host != host.toLower())
        result.setHost(host.toLower(), QUrl::TolerantMode);
    if (url.port() != -1 && url.port() == defaultPort(scheme))
        result.setPort(-1);
    QString path = normalizedEscapes(url.path(QUrl::FullyEncoded));
    // Only a hierarchical path has dot segments; an opaque one (mailto:, data:) keeps its dots.
    if (path.startsWith(u'/'))
        path = withoutDotSegments(path);
    else if (path.isEmpty() && !host.isEmpty() && (scheme == u"http" || scheme == u"https"))
        path = QStringLiteral("/");
    result.setPath(path, QUrl::TolerantMode);
    if (url.hasQuery())
        result.setQuery(normalizedEscapes(url.query(QUrl::FullyEncoded)), QUrl::TolerantMode);
    if (url.hasFragment())
        result.setFragment(normalizedEscapes(url.fragment(QUrl::FullyEncoded)), QUrl::TolerantMode);
    return result;
}

QString WebUrl::identity(const QUrl& url)
{
    if (!url.isValid() || url.isEmpty())
        return QString();
    return normalized(url.adjusted(QUrl::RemoveFragment)).toString(QUrl::FullyEncoded);
}

QString WebUrl::fragmentOf(const QUrl& url)
{
    if (!url.hasFragment())
        return QString();
    const QString fragment = url.fragment(QUrl::FullyDecoded);
    return fragment.isNull() ? QStringLiteral("") : fragment;
}

bool WebUrl::isFetchable(const QUrl& url)
{
    if (!url.isValid() || url.host().isEmpty())
        return false;
    const QString scheme = url.scheme().toLower();
    return scheme == u"http" || scheme == u"https";
}

QString WebUrl::schemeOf(const QUrl& url)
{
    return url.scheme().toLower();
}

bool WebUrl::isSameOrigin(const QUrl& a, const QUrl& b)
{
    if (!a.isValid() || !b.isValid() || a.host().isEmpty())
        return false;
    const QString scheme = schemeOf(a);
    if (scheme != schemeOf(b))
        return false;
    if (a.host(QUrl::FullyEncoded).compare(b.host(QUrl::FullyEncoded), Qt::CaseInsensitive) != 0)
        return false;
    const int port = defaultPort(scheme);
    return a.port(port) == b.port(port);
}
