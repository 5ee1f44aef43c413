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
    QString text;       // anchor text for a and area (alt of an image inside when no text),
                        // alt for img, title otherwise; trimmed, blanks collapsed, at most 200
                        // characters
    QString rel;        // rel attribute of a, area and link, lower case, blanks collapsed
    bool nofollow = false;      // rel holds the token "nofollow"
    bool navigational = false;  // a, area, iframe, frame, meta refresh: may lead to a page to crawl
};

// What the web rules read in one HTML page.
struct WebPageScan {
    QString title;          // first <title>, trimmed, blanks collapsed; "" when none
    bool noIndex = false;   // <meta name=robots> content holds noindex (any case)
    bool noFollow = false;  // ... holds nofollow or none
    QUrl canonical;         // resolved href of the last <link rel=canonical>; invalid when none
    QUrl base;              // the base links resolve against: <base href> (the first one with an
                            // href, resolved against the page URL) or the page URL
    QList<WebLinkFound> links;    // in document order
    QSet<QString> fragmentIds;    // every id attribute and every <a name>, as written
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
class WebLinkExtractor {
public:
    static WebPageScan scan(const QByteArray& html, const QUrl& pageUrl);
};
