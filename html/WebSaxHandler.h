#pragma once

#include "html/CollapsedText.h"
#include "html/WebLinkExtractor.h"

#include <QHash>
#include <QString>

#include <libxml/HTMLparser.h>

// The events of libxml2's HTML SAX parser turned into what the web rules read from a page:
// links as written (not yet resolved), the first <base href>, the title, the robots meta
// flags, the last canonical reference and the fragment targets. Keeps no tree: only the
// element it is inside of where that matters (an open anchor, the first title, a <style>).
class WebSaxHandler {
public:
    // The callbacks to hand libxml2 with a WebSaxHandler as the user data.
    static htmlSAXHandler callbacks();

    // To call once the parser has seen the last byte: closes an anchor left open.
    void finish();

    // Links have `raw` set and `url` still empty; the scan's canonical, base and url fields
    // are left to the caller.
    WebPageScan scan;
    QString baseHref;        // null when no <base> has an href
    QString canonicalHref;   // null when no <link rel=canonical> has one

    // At most this many characters of a link's text are kept.
    static constexpr qsizetype kTextLimit = 200;

private:
    void startElement(const char* name, const char* const* attributes);
    void endElement(const char* name);
    void characters(const char* bytes, int length);
    void rawText(const char* bytes, int length);

    void addLink(const char* tag, const char* attribute, const QString& value, const QString& text,
                 const QString& rel = QString(), bool navigational = false);
    void addStyleLinks(const char* tag, const char* attribute, const QString& css, const QString& text);
    void openAnchor(const char* tag, const char* const* attributes);
    void closeAnchor();
    void readMeta(const char* const* attributes);

    static void onStartElement(void* context, const xmlChar* name, const xmlChar** attributes);
    static void onEndElement(void* context, const xmlChar* name);
    static void onCharacters(void* context, const xmlChar* bytes, int length);
    static void onRawText(void* context, const xmlChar* bytes, int length);

    // One shared copy of each tag, attribute and rel text: a page repeats them thousands of times.
    const QString& interned(const char* utf8);
    const QString& interned(const QString& text);
    QHash<QString, QString> interned_;

    qsizetype anchor_ = -1;  // index in scan.links of the open a, or -1
    CollapsedText anchorText_{kTextLimit};
    QString anchorImageAlt_;
    bool inTitle_ = false;
    bool titleSeen_ = false;
    CollapsedText title_;
    bool inStyle_ = false;
    QString style_;
    int svgDepth_ = 0;
};
