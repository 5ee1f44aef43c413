#include "html/WebLinkExtractor.h"

#include "html/WebCharset.h"
#include "html/WebSaxHandler.h"
#include "html/WebUrl.h"

#include <QHash>
#include <QStringDecoder>

#include <libxml/HTMLparser.h>
#include <libxml/parserInternals.h>

#include <memory>

namespace {

constexpr int kParseOptions = HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET;

constexpr qsizetype kRootEndLength = 6; // "</html"

bool isAsciiBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

// libxml2 stops reading at the end of the root element, where browsers go on putting what
// follows </html> into the body (pages often end with scripts or a second document there).
// The end tag is renamed to one that closes nothing, so the root stays open to the end.
// `whole` tells that nothing follows these bytes.
void keepRootOpen(QByteArray& utf8, bool whole)
{
    for (qsizetype at = utf8.indexOf("</"); at >= 0; at = utf8.indexOf("</", at + 2)) {
        if (at + kRootEndLength > utf8.size())
            return;
        if ((utf8[at + 2] | 0x20) != 'h' || (utf8[at + 3] | 0x20) != 't' || (utf8[at + 4] | 0x20) != 'm'
            || (utf8[at + 5] | 0x20) != 'l')
            continue;
        const qsizetype next = at + kRootEndLength;
        if (next < utf8.size() ? (isAsciiBlank(utf8[next]) || utf8[next] == '>' || utf8[next] == '/') : whole)
            utf8[at + 5] = 'x';
    }
}

struct ContextDeleter {
    void operator()(htmlParserCtxtPtr context) const { htmlFreeParserCtxt(context); }
};

// Feeds the page to libxml2 as UTF-8 it need not check: the bytes are decoded here in the
// page's encoding, so that libxml2 neither guesses another one at the first byte that is not
// UTF-8 nor stops at a byte its converter refuses.
void parse(const QByteArray& html, const QByteArray& encoding, WebSaxHandler& handler)
{
    htmlSAXHandler sax = WebSaxHandler::callbacks();
    std::unique_ptr<htmlParserCtxt, ContextDeleter> context(
        htmlCreatePushParserCtxt(&sax, &handler, nullptr, 0, nullptr, XML_CHAR_ENCODING_NONE));
    if (!context)
        return;
    htmlCtxtUseOptions(context.get(), kParseOptions);
    // Fixed as UTF-8, a later <meta charset> cannot switch it to anything else.
    if (xmlCharEncodingHandlerPtr utf8 = xmlFindCharEncodingHandler("UTF-8"))
        xmlSwitchToEncoding(context.get(), utf8);

    QStringDecoder decoder(encoding.constData());
    if (!decoder.isValid())
        decoder = QStringDecoder(QStringDecoder::Utf8);
    QByteArray carried;
    for (qsizetype at = 0; at < html.size(); at += WebLinkExtractor::kChunkSize) {
        const QByteArrayView chunk = QByteArrayView(html).sliced(at, qMin(WebLinkExtractor::kChunkSize, html.size() - at));
        QString text = decoder.decode(chunk);
        // libxml2 ends an attribute or a text at a zero byte; browsers read U+FFFD there.
        if (text.contains(QChar(0)))
            text.replace(QChar(0), QChar(QChar::ReplacementCharacter));
        QByteArray utf8 = carried + text.toUtf8();
        // A tag cut at the chunk's end waits for the next one, to be seen whole.
        const qsizetype lastTag = utf8.lastIndexOf('<');
        const bool last = at + chunk.size() >= html.size();
        if (!last && lastTag >= 0 && utf8.size() - lastTag < kRootEndLength + 1) {
            carried = utf8.sliced(lastTag);
            utf8.truncate(lastTag);
        } else {
            carried.clear();
        }
        keepRootOpen(utf8, last);
        if (!utf8.isEmpty())
            htmlParseChunk(context.get(), utf8.constData(), static_cast<int>(utf8.size()), 0);
    }
    htmlParseChunk(context.get(), nullptr, 0, 1);
    handler.finish();
}

} // namespace

WebPageScan WebLinkExtractor::scan(const QByteArray& html, const QUrl& pageUrl)
{
    return scan(html, pageUrl, QByteArray());
}

WebPageScan WebLinkExtractor::scan(const QByteArray& html, const QUrl& pageUrl, const QByteArray& transportCharset)
{
    WebSaxHandler handler;
    parse(html, WebCharset::encodingOf(html, transportCharset), handler);
    WebPageScan result = std::move(handler.scan);

    // Browsers resolve every link of the page against the first <base href>, wherever it is;
    // one that makes no URL leaves the page's own address as the base.
    result.base = WebUrl::normalized(pageUrl);
    if (!handler.baseHref.isNull()) {
        const QUrl base = WebUrl::resolve(pageUrl, handler.baseHref);
        if (base.isValid())
            result.base = base;
    }
    // Pages repeat their references (menus, footers): each distinct one is resolved once.
    QHash<QString, QUrl> resolved;
    // Texts that are missing are empty, not null: they are stored as such.
    const QString empty = QStringLiteral("");
    if (result.title.isNull())
        result.title = empty;
    for (WebLinkFound& link : result.links) {
        if (link.text.isNull())
            link.text = empty;
        if (link.rel.isNull())
            link.rel = empty;
        auto known = resolved.constFind(link.raw);
        if (known == resolved.constEnd())
            known = resolved.insert(link.raw, WebUrl::resolve(result.base, link.raw));
        else
            link.raw = known.key(); // one shared copy of a repeated reference
        link.url = known.value();
    }
    if (!handler.canonicalHref.isNull())
        result.canonical = WebUrl::resolve(result.base, handler.canonicalHref);
    return result;
}
