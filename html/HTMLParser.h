#pragma once

#include "html/HTMLNode.h"
#include "base/AppError.h"

#include <QByteArray>
#include <QString>
#include <QUrl>

#include <libxml/HTMLparser.h>

#include <memory>

class HTMLParser;
using HTMLParserPtr = std::shared_ptr<HTMLParser>;

// Parses a page with libxml2's HTML parser and owns the resulting document. Parse errors and
// warnings are silent; when libxml2 builds no document every query answers null.
class HTMLParser {
public:
    // Recovering parse of the string's UTF-8 bytes. An empty string leaves the parser without
    // a document and reports the error "HTMLParserdomain" 1 (when error is given).
    static HTMLParserPtr initWithString(const QString& string, AppError* error);
    // Parse of raw page bytes, read as UTF-8 whatever the page declares, without recovery.
    // Parsing stops at the first zero byte. A null byte array reports "HTMLParserdomain" 1.
    static HTMLParserPtr initWithData(const QByteArray& data, AppError* error);
    // Reads the resource (local file, or http/https) and parses it as initWithData does.
    // Null when it cannot be read; then error describes why.
    static HTMLParserPtr initWithContentsOfURL(const QUrl& url, AppError* error);

    HTMLParser() = default;
    HTMLParser(const HTMLParser&) = delete;
    HTMLParser& operator=(const HTMLParser&) = delete;

    // The document node, or null without a document.
    HTMLNodePtr doc() const;
    // First element of that name anywhere in the document, or null.
    HTMLNodePtr html() const;
    HTMLNodePtr head() const;
    HTMLNodePtr body() const;

    htmlDocPtr xmlDocument() const { return doc_.get(); }

    // Option sets handed to htmlReadDoc: recover + no errors + no warnings for strings,
    // no errors + no warnings for downloaded data.
    static constexpr int kStringParseOptions = HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING;
    static constexpr int kDataParseOptions = HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING;

private:
    void adopt(htmlDocPtr document);
    HTMLNodePtr findInDocument(const char* tagName) const;

    // Shared with the node handles made from this parser, which keeps them valid.
    std::shared_ptr<xmlDoc> doc_;
};

static_assert(HTMLParser::kStringParseOptions == 97);
static_assert(HTMLParser::kDataParseOptions == 96);
