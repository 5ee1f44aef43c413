#pragma once

#include <QString>
#include <QUrl>

// Links read as a browser reads them: RFC 3986 resolution on QUrl, after the clean-up the
// HTML standard applies to an attribute's URL. Used by the web rules only; the classic
// rules keep their own path operations.
class WebUrl {
public:
    // The reference as a browser takes it from an attribute: leading and trailing ASCII
    // blanks (space, tab, LF, FF, CR) and other C0 controls stripped, as the URL parser
    // strips them, and every tab, LF and CR inside removed.
    static QString cleanReference(const QString& raw);

    // `reference` (raw attribute text; cleaned here) resolved against the absolute `base`
    // by RFC 3986 section 5.2, then normalised (see normalized). Invalid when the
    // reference makes no URL (for instance "http://[bad"); the fragment, if any, is kept.
    // Where browsers part from RFC 3986 on the special schemes (http, https, ws, wss, ftp),
    // they are followed: "http:g" against an http base is the relative "g", "https:host"
    // against another scheme names a host, a run of slashes before a host counts as two,
    // a backslash before the query is a slash, and such a URL without a host is invalid.
    // Against an opaque base (mailto:) only a fragment resolves.
    static QUrl resolve(const QUrl& base, const QString& reference);

    // Scheme and host in lower case, the scheme's default port dropped, dot segments
    // removed, an empty path of http and https made "/", percent-escapes of unreserved
    // characters decoded. The fragment is kept.
    static QUrl normalized(const QUrl& url);

    // The identity of the document a URL names: its normalised form without the fragment,
    // as a string (QUrl::FullyEncoded). Two links to one page give one identity. The
    // query is kept as written. "" for an invalid URL.
    static QString identity(const QUrl& url);
    // The fragment as the target page must hold it: percent-decoded; null when the URL has
    // none, "" for a bare "#".
    static QString fragmentOf(const QUrl& url);

    // http or https with a host: the only URLs a crawl asks for.
    static bool isFetchable(const QUrl& url);
    // The scheme in lower case ("mailto", "tel", "ftp"...); "" when there is none.
    static QString schemeOf(const QUrl& url);
    // Same scheme, host and port (default ports counted). A URL without a host (mailto:)
    // has an origin of its own, the same as no other.
    static bool isSameOrigin(const QUrl& a, const QUrl& b);
};
