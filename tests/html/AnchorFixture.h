#pragma once

#include "html/HTMLNode.h"
#include "html/HTMLParser.h"

#include <QString>

#include <libxml/tree.h>

// Builds the "a" element of a one-link page. The href is set as an exact attribute value
// afterwards, so that any string (quotes, blanks, fragments) can be tried; a null href leaves
// the element without the attribute.
inline HTMLNodePtr makeAnchor(const QString& href, const QString& innerHTML = QStringLiteral("Link"),
                              const QString& extraAttributes = QString())
{
    const QString page = QStringLiteral("<html><body><a %1>%2</a></body></html>").arg(extraAttributes, innerHTML);
    HTMLParserPtr parser = HTMLParser::initWithData(page.toUtf8(), nullptr);
    HTMLNodePtr anchor = parser->body() ? parser->body()->findChildTag(QStringLiteral("a")) : nullptr;
    if (anchor && !href.isNull())
        xmlSetProp(anchor->node(), BAD_CAST "href", BAD_CAST href.toUtf8().constData());
    // The handle shares the document, so it stays valid after the parser is gone.
    return anchor;
}
