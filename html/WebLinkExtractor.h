#pragma once

#include <QByteArray>
#include <QList>
#include <QSet>
#include <QString>
#include <QUrl>

// One reference found in a page, as a browser would follow or load it.
struct WebLinkFound {
    QString tag;        // element name in lower case: "a", "img", "link", "style", "meta"...
    QString attribute;  // "href", "src", "srcset", "poster", "data", "content" (meta refresh),
                        // "style" (url() in a style attribute), "" (url() in a <style> block)
    QString raw;        // the reference as written, after WebUrl::cleanReference
    QUrl url;           // resolved against the base (fragment kept); invalid when it makes none
    QString text;       // anchor text for a (alt of the first image inside with one when no
                        // text), alt for area and img, title otherwise; trimmed, blanks
                        // collapsed, at most 200 characters; "" for a <style> block
    QString rel;        // rel attribute of a, area and link, lower case, blanks collapsed;
                        // "" otherwise (text, rel and raw are never null)
    bool nofollow = false;      // rel holds the token "nofollow"
    bool navigational = false;  // a, area, iframe, frame, meta refresh: may lead to a page to crawl
};

// What the web rules read in one HTML page.
struct WebPageScan {
    QString title;          // first <title>, trimmed, blanks collapsed; "" when none
    bool noIndex = false;   // <meta name=robots> content holds noindex or none (any case)
    bool noFollow = false;  // ... holds nofollow or none; directives are separated by commas
                            // or blanks
    QUrl canonical;         // resolved href of the last <link rel=canonical>; invalid when none
    QUrl base;              // the base links resolve against: <base href> (the first one with an
                            // href, resolved against the page URL) or the page URL
    QList<WebLinkFound> links;    // in document order; one element's own attributes first,
                                  // then the url()s of its style attribute
    QSet<QString> fragmentIds;    // every non-empty id attribute and <a name>, as written
};

// Reads a page with libxml2's HTML push parser (SAX callbacks, no tree): memory grows with the
// links found, not with the page. Every link kind a browser loads or follows:
//   a, area: href            link: href (every rel; canonical goes to WebPageScan::canonical
//                            and is not a link)
//   img: src, srcset         source: src, srcset
//   script, iframe, frame, embed, video, audio, track, input type=image: src
//   video: poster            object: data
//   meta http-equiv=refresh: the URL in content
//   url(...) in style attributes and <style> blocks (also @import "x")
// A srcset gives one link per candidate URL. References that are empty after cleaning are
// skipped, except an href of "" or "#" on a and area, which are links to the page itself.
// The page's bytes are read in the encoding a browser would choose (see WebCharset): a byte
// order mark, else the charset the server declared, else a <meta> charset near the top,
// else UTF-8; bytes that make no character in it read as a replacement character.
class WebLinkExtractor {
public:
    static WebPageScan scan(const QByteArray& html, const QUrl& pageUrl);
    // The same, with the charset parameter of the answer's Content-Type ("" for none), which
    // takes precedence over the page's own <meta>.
    static WebPageScan scan(const QByteArray& html, const QUrl& pageUrl, const QByteArray& transportCharset);

    // The parser is fed this many bytes at a time.
    static constexpr qsizetype kChunkSize = 64 * 1024;
};
