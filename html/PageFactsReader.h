#pragma once

#include "html/PageFacts.h"

#include <QByteArray>

// Reads a page's facts straight from libxml2's HTML parser events, without building the tree.
// The answer is the one PageFacts::fromDocument gives for HTMLParser::initWithData of the same
// bytes, down to the parser's own quirks: the events are those the tree builder would get,
// and each is applied as the tree builder applies it (where text joins the node before it,
// which element a node lands in, when the parse is cut short). The tree builder's node stack
// is kept in the parser context, so that the parser's own pops and depth limit act on it.
class PageFactsReader {
public:
    static PageFacts read(const QByteArray& data);
};
