// Feeds random bytes to the web rules' link reader as a page, and checks what it reads: every
// link's URL is invalid or has a scheme, its reference is clean, its texts are collapsed and
// short; resolving a URL's identity again gives the same identity, and normalising twice
// changes nothing. The fixed bases cover a page at the root, one in a folder with a query,
// and https.
//
// Input: the first byte selects the page URL (low two bits) and the charset the server
// declared (next two bits: none, ISO-8859-1, Shift_JIS, UTF-16LE); the rest is the page.

#include "FuzzSupport.h"

#include "html/WebLinkExtractor.h"
#include "html/WebUrl.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <libxml/parser.h>

#include <cstdint>

namespace {

using fuzz::check;

const QUrl kPages[] = {QUrl(QStringLiteral("http://www.example.com/")),
                       QUrl(QStringLiteral("http://example.com/dir/page.html?x=1")),
                       QUrl(QStringLiteral("https://www.example.com:8443/a/b/")),
                       QUrl(QStringLiteral("HTTP://Example.COM:80/%7Euser/index.html"))};
const QByteArray kCharsets[] = {QByteArray(), QByteArrayLiteral("ISO-8859-1"), QByteArrayLiteral("Shift_JIS"),
                                QByteArrayLiteral("UTF-16LE")};

bool isCollapsed(const QString& text)
{
    return text == text.simplified();
}

void checkUrl(const QUrl& base, const QUrl& url, const QString& what)
{
    if (!url.isValid())
        return;
    const QString shown = what + u' ' + url.toString(QUrl::FullyEncoded);
    check(!WebUrl::schemeOf(url).isEmpty(), "valid URL without a scheme", shown);
    const QUrl once = WebUrl::normalized(url);
    check(WebUrl::normalized(once) == once, "normalising twice changes the URL", shown);
    const QString identity = WebUrl::identity(url);
    check(!identity.isEmpty(), "valid URL without an identity", shown);
    const QUrl again = WebUrl::resolve(base, identity);
    check(again.isValid(), "an identity does not resolve", shown + u' ' + identity);
    check(WebUrl::identity(again) == identity, "an identity resolves to another",
          shown + u' ' + identity + u' ' + WebUrl::identity(again));
    if (WebUrl::isFetchable(url))
        check(WebUrl::isSameOrigin(url, again), "a fetchable URL changes origin by its identity", shown);
}

void fuzzPage(unsigned char mode, const QByteArray& page)
{
    const QUrl& pageUrl = kPages[mode & 3];
    const WebPageScan scan = WebLinkExtractor::scan(page, pageUrl, kCharsets[(mode >> 2) & 3]);
    check(scan.base.isValid(), "no base");
    check(isCollapsed(scan.title), "title not collapsed", scan.title);
    checkUrl(scan.base, scan.base, QStringLiteral("base"));
    checkUrl(scan.base, scan.canonical, QStringLiteral("canonical"));
    for (const WebLinkFound& link : scan.links) {
        check(!link.tag.isEmpty(), "link without a tag", link.raw);
        check(link.raw == WebUrl::cleanReference(link.raw), "reference not clean", link.raw);
        check(!link.raw.isEmpty() || link.tag == u"a" || link.tag == u"area", "empty reference kept", link.tag);
        check(link.text.size() <= 200, "text too long", link.text);
        check(isCollapsed(link.text), "text not collapsed", link.text);
        check(isCollapsed(link.rel) && link.rel == link.rel.toLower(), "rel not collapsed in lower case", link.rel);
        check(!link.nofollow || link.rel.contains(u"nofollow"), "nofollow without its token", link.rel);
        check(link.url == WebUrl::resolve(scan.base, link.raw), "link resolved otherwise than its reference", link.raw);
        checkUrl(scan.base, link.url, link.raw);
        (void)WebUrl::fragmentOf(link.url);
    }
    for (const QString& id : scan.fragmentIds)
        check(!id.isEmpty(), "empty fragment id");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    xmlInitParser();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray payload(reinterpret_cast<const char*>(data) + 1, static_cast<qsizetype>(size - 1));
    fuzz::runInput([&] { fuzzPage(data[0], payload); });
    return 0;
}
