#pragma once

#include "html/HTMLParser.h"

#include <QList>
#include <QString>

// What the classic page analysis reads of one anchor. Each text is null when the anchor has
// no such attribute (or one without a value), as HTMLNode::getAttributeNamed answers.
struct AnchorFacts {
    QString href;
    QString rel;
    QString alt;
    QString title;
    // The stored text of the anchor's first child (text, comment or processing instruction);
    // null when that child is an element or there is none.
    QString firstChildText;
    // The first img element inside the anchor, at any depth.
    bool hasImage = false;
    QString imageAlt;
    QString imageSource;

    static AnchorFacts fromNode(const HTMLNode& anchor);
    bool operator==(const AnchorFacts& other) const;
};

// A meta or link element of the head: the two attributes the analysis looks at.
struct HeadElementFacts {
    QString first;   // meta: name; link: rel
    QString second;  // meta: content; link: href
    bool operator==(const HeadElementFacts& other) const;
};

// Everything the classic analysis reads of a page: from the first head, its first title's
// first child text and every meta and link element; from the first body, every anchor in
// document order.
struct PageFacts {
    QString titleText;  // null without a title, or when its first child is an element
    QList<HeadElementFacts> metas;
    QList<HeadElementFacts> links;
    QList<AnchorFacts> anchors;

    // Reads the facts from a parsed tree; a parser without a document gives empty facts.
    static PageFacts fromDocument(const HTMLParser& parser);
    bool operator==(const PageFacts& other) const;
    // A readable dump, to show where two readings differ.
    QString description() const;
};
