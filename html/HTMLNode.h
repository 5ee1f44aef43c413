#pragma once

#include <QList>
#include <QString>

#include <libxml/tree.h>

#include <memory>

class HTMLNode;
using HTMLNodePtr = std::shared_ptr<HTMLNode>;

// Values answered by HTMLNode::nodetype(), from the node's name.
enum HTMLNodeType : int {
    HTMLAnchorNode = 0,         // "a"
    HTMLTextNode = 1,           // "text" (libxml2's name for text nodes)
    HTMLUnknownNode = 2,        // anything else, or no node, or no name
    HTMLCodeNode = 3,           // "code"
    HTMLSpanNode = 4,           // "span"
    HTMLParagraphNode = 5,      // "p"
    HTMLListItemNode = 6,       // "li"
    HTMLUnorderedListNode = 7,  // "ul"
    HTMLImageNode = 8,          // "image" ("img" is HTMLUnknownNode)
    HTMLOrderedListNode = 9,    // "ol"
    HTMLStrongNode = 10,        // "strong"
    HTMLPreNode = 11,           // "pre"
    HTMLBlockquoteNode = 12     // "blockquote"
};

// A handle on one node of a libxml2 tree (element, text, document...). It never frees the
// node. Handles made by an HTMLParser also share ownership of its document, so they stay
// valid when the parser goes first; handles made from a bare pointer borrow it.
// A handle may wrap a null pointer: then every query answers null (or empty, or
// HTMLUnknownNode) without touching memory.
class HTMLNode {
public:
    explicit HTMLNode(xmlNode* node = nullptr, std::shared_ptr<const void> keepAlive = {});

    static HTMLNodePtr initWithXMLNode(xmlNode* node);

    xmlNode* node() const { return node_; }

    // Navigation: always a handle, possibly on a null pointer.
    HTMLNodePtr parent() const;
    HTMLNodePtr firstChild() const;
    HTMLNodePtr nextSibling() const;
    HTMLNodePtr previousSibling() const;
    // Every child node in order, text nodes included.
    QList<HTMLNodePtr> children() const;

    QString tagName() const;
    QString className() const;
    HTMLNodeType nodetype() const;

    // Value of the first attribute with exactly this name, from its first value node.
    // alt="" gives ""; an attribute without value, or no such attribute, gives null.
    QString getAttributeNamed(const QString& name) const;

    // Depth-first searches over the descendants, in document order; empty pointer or empty
    // list when nothing matches. Names compare case-sensitively (the parser lower-cases tags).
    HTMLNodePtr findChildTag(const QString& tagName) const;
    QList<HTMLNodePtr> findChildTags(const QString& tagName) const;
    HTMLNodePtr findChildWithAttribute(const QString& attribute, const QString& matchingName,
                                       bool allowPartial) const;
    QList<HTMLNodePtr> findChildrenWithAttribute(const QString& attribute, const QString& matchingName,
                                                 bool allowPartial) const;
    HTMLNodePtr findChildOfClass(const QString& className) const;
    QList<HTMLNodePtr> findChildrenOfClass(const QString& className) const;

    // Text of the first child node only; null when there is none or it is an element.
    QString contents() const;
    // All text of the node and its descendants; "" when there is none; null without a node.
    QString allContents() const;
    // The node serialised as HTML; null when nothing was written.
    QString rawContents() const;
    // "<name>contents\n", each child's description, "<name>\n".
    QString description() const;

    // Appends the stored text of node and of each following sibling, each followed by the
    // text of its own descendants.
    void appendChildContentsToString(QString& string, xmlNode* node) const;

private:
    HTMLNodePtr handle(xmlNode* node) const;

    xmlNode* node_ = nullptr;
    std::shared_ptr<const void> keepAlive_;
};
