#include "html/HTMLNode.h"

#include "html/CStringDecoding.h"

#include <libxml/HTMLtree.h>
#include <libxml/xmlsave.h>

#include <cstring>
#include <vector>

namespace {

// libxml2 puts several record layouts behind xmlNode*; only the common prefix (type, name,
// children, next...) is valid for all of them, so every field beyond it is read only for the
// node types that really have it.

bool isNamespace(const xmlNode* n)
{
    return n->type == XML_NAMESPACE_DECL;
}

const char* nameOf(const xmlNode* n)
{
    if (!n || isNamespace(n))
        return nullptr;
    return reinterpret_cast<const char*>(n->name);
}

// The text a node stores itself (text, CDATA, comment, processing instruction); null for
// elements and for the record types without a content field.
const char* storedContentOf(const xmlNode* n)
{
    if (!n)
        return nullptr;
    switch (n->type) {
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
    case XML_COMMENT_NODE:
    case XML_PI_NODE:
        return reinterpret_cast<const char*>(n->content);
    default:
        return nullptr;
    }
}

// The children that belong to this node's subtree. An entity reference's children pointer
// leads into the DTD, so it is not followed.
xmlNode* childrenOf(const xmlNode* n)
{
    if (!n || isNamespace(n) || n->type == XML_ENTITY_REF_NODE)
        return nullptr;
    return n->children;
}

// Visits first and its following siblings, each before its own descendants, in document
// order, until visit answers true. Iterative, so deep trees cannot exhaust the stack.
template <typename Visit>
void walkFrom(xmlNode* first, Visit visit)
{
    std::vector<xmlNode*> pending;
    xmlNode* cur = first;
    for (;;) {
        if (!cur) {
            if (pending.empty())
                return;
            cur = pending.back();
            pending.pop_back();
            continue;
        }
        if (isNamespace(cur)) {
            cur = nullptr;
            continue;
        }
        if (visit(cur))
            return;
        if (xmlNode* kids = childrenOf(cur)) {
            pending.push_back(cur->next);
            cur = kids;
        } else {
            cur = cur->next;
        }
    }
}

bool isElementNamed(const xmlNode* n, const QByteArray& name)
{
    const char* nodeName = nameOf(n);
    return n->type == XML_ELEMENT_NODE && nodeName && std::strcmp(nodeName, name.constData()) == 0;
}

// The first attribute of that name on an element, or null.
xmlAttr* firstAttributeNamed(const xmlNode* n, const QByteArray& name)
{
    if (!n || n->type != XML_ELEMENT_NODE)
        return nullptr;
    for (xmlAttr* attr = n->properties; attr; attr = attr->next) {
        if (attr->name && std::strcmp(reinterpret_cast<const char*>(attr->name), name.constData()) == 0)
            return attr;
    }
    return nullptr;
}

// Only the first attribute of the name is examined; any of its value nodes may match.
bool attributeMatches(const xmlNode* n, const QByteArray& attribute, const QByteArray& value, bool partial)
{
    const xmlAttr* attr = firstAttributeNamed(n, attribute);
    if (!attr)
        return false;
    for (const xmlNode* child = attr->children; child; child = child->next) {
        const char* content = storedContentOf(child);
        if (!content)
            continue;
        if (partial ? std::strstr(content, value.constData()) != nullptr
                    : std::strcmp(content, value.constData()) == 0)
            return true;
    }
    return false;
}

QString printable(const QString& s)
{
    return s.isNull() ? QStringLiteral("(null)") : s;
}

QString printableName(const xmlNode* n)
{
    return printable(textFromCString(nameOf(n)));
}

QString firstChildContents(const xmlNode* n)
{
    return textFromCString(storedContentOf(childrenOf(n)));
}

} // namespace

HTMLNode::HTMLNode(xmlNode* node, std::shared_ptr<const void> keepAlive)
    : node_(node)
    , keepAlive_(std::move(keepAlive))
{
}

HTMLNodePtr HTMLNode::initWithXMLNode(xmlNode* node)
{
    return std::make_shared<HTMLNode>(node);
}

HTMLNodePtr HTMLNode::handle(xmlNode* node) const
{
    return std::make_shared<HTMLNode>(node, keepAlive_);
}

HTMLNodePtr HTMLNode::parent() const
{
    return handle(node_ && !isNamespace(node_) ? node_->parent : nullptr);
}

HTMLNodePtr HTMLNode::firstChild() const
{
    return handle(childrenOf(node_));
}

HTMLNodePtr HTMLNode::nextSibling() const
{
    return handle(node_ && !isNamespace(node_) ? node_->next : nullptr);
}

HTMLNodePtr HTMLNode::previousSibling() const
{
    return handle(node_ && !isNamespace(node_) ? node_->prev : nullptr);
}

QList<HTMLNodePtr> HTMLNode::children() const
{
    QList<HTMLNodePtr> result;
    for (xmlNode* child = childrenOf(node_); child; child = child->next)
        result.append(handle(child));
    return result;
}

QString HTMLNode::tagName() const
{
    return textFromCString(nameOf(node_));
}

QString HTMLNode::className() const
{
    return getAttributeNamed(QStringLiteral("class"));
}

HTMLNodeType HTMLNode::nodetype() const
{
    const char* name = nameOf(node_);
    if (!name)
        return HTMLUnknownNode;
    static const struct {
        const char* name;
        HTMLNodeType type;
    } kTypes[] = {
        {"a", HTMLAnchorNode},        {"text", HTMLTextNode},        {"code", HTMLCodeNode},
        {"span", HTMLSpanNode},       {"p", HTMLParagraphNode},      {"li", HTMLListItemNode},
        {"ul", HTMLUnorderedListNode}, {"image", HTMLImageNode},     {"ol", HTMLOrderedListNode},
        {"strong", HTMLStrongNode},   {"pre", HTMLPreNode},          {"blockquote", HTMLBlockquoteNode},
    };
    for (const auto& entry : kTypes) {
        if (std::strcmp(name, entry.name) == 0)
            return entry.type;
    }
    return HTMLUnknownNode;
}

QString HTMLNode::getAttributeNamed(const QString& name) const
{
    const xmlAttr* attr = firstAttributeNamed(node_, name.toUtf8());
    if (!attr || !attr->children)
        return QString();
    return textFromCString(storedContentOf(attr->children));
}

HTMLNodePtr HTMLNode::findChildTag(const QString& tagName) const
{
    const QByteArray wanted = tagName.toUtf8();
    xmlNode* found = nullptr;
    walkFrom(childrenOf(node_), [&](xmlNode* n) {
        if (!isElementNamed(n, wanted))
            return false;
        found = n;
        return true;
    });
    return found ? handle(found) : HTMLNodePtr();
}

QList<HTMLNodePtr> HTMLNode::findChildTags(const QString& tagName) const
{
    const QByteArray wanted = tagName.toUtf8();
    QList<HTMLNodePtr> result;
    walkFrom(childrenOf(node_), [&](xmlNode* n) {
        if (isElementNamed(n, wanted))
            result.append(handle(n));
        return false;
    });
    return result;
}

HTMLNodePtr HTMLNode::findChildWithAttribute(const QString& attribute, const QString& matchingName,
                                             bool allowPartial) const
{
    const QByteArray attr = attribute.toUtf8();
    const QByteArray value = matchingName.toUtf8();
    xmlNode* found = nullptr;
    walkFrom(childrenOf(node_), [&](xmlNode* n) {
        if (!attributeMatches(n, attr, value, allowPartial))
            return false;
        found = n;
        return true;
    });
    return found ? handle(found) : HTMLNodePtr();
}

QList<HTMLNodePtr> HTMLNode::findChildrenWithAttribute(const QString& attribute, const QString& matchingName,
                                                       bool allowPartial) const
{
    const QByteArray attr = attribute.toUtf8();
    const QByteArray value = matchingName.toUtf8();
    QList<HTMLNodePtr> result;
    walkFrom(childrenOf(node_), [&](xmlNode* n) {
        if (attributeMatches(n, attr, value, allowPartial))
            result.append(handle(n));
        return false;
    });
    return result;
}

HTMLNodePtr HTMLNode::findChildOfClass(const QString& className) const
{
    return findChildWithAttribute(QStringLiteral("class"), className, false);
}

QList<HTMLNodePtr> HTMLNode::findChildrenOfClass(const QString& className) const
{
    return findChildrenWithAttribute(QStringLiteral("class"), className, false);
}

QString HTMLNode::contents() const
{
    return firstChildContents(node_);
}

QString HTMLNode::allContents() const
{
    if (!node_ || isNamespace(node_))
        return QString();
    xmlChar* content = xmlNodeGetContent(node_);
    if (!content)
        return QStringLiteral("");
    QString text = textFromCString(reinterpret_cast<const char*>(content));
    xmlFree(content);
    return text;
}

QString HTMLNode::rawContents() const
{
    if (!node_ || isNamespace(node_))
        return QString();
    xmlBufferPtr buffer = xmlBufferCreateSize(1000);
    if (!buffer)
        return QString();
    xmlOutputBufferPtr output = xmlOutputBufferCreateBuffer(buffer, nullptr);
    QString text;
    if (output) {
        const char* encoding = node_->doc ? reinterpret_cast<const char*>(node_->doc->encoding) : nullptr;
        htmlNodeDumpOutput(output, node_->doc, node_, encoding);
        xmlOutputBufferFlush(output);
        const int length = xmlBufferLength(buffer);
        if (length > 0)
            text = textFromBytes(QByteArrayView(reinterpret_cast<const char*>(xmlBufferContent(buffer)), length));
        xmlOutputBufferClose(output);
    }
    xmlBufferFree(buffer);
    return text;
}

QString HTMLNode::description() const
{
    // Iterative rather than recursive: the opening line of a node, then its children, then
    // the closing line.
    QString out;
    auto open = [&out](const xmlNode* n) {
        out += QLatin1Char('<') + printableName(n) + QLatin1Char('>') + printable(firstChildContents(n))
            + QLatin1Char('\n');
    };
    auto close = [&out](const xmlNode* n) { out += QLatin1Char('<') + printableName(n) + QLatin1String(">\n"); };

    struct Frame {
        xmlNode* node;
        xmlNode* nextChild;
    };
    std::vector<Frame> stack;
    open(node_);
    stack.push_back({node_, childrenOf(node_)});
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (xmlNode* child = top.nextChild) {
            top.nextChild = child->next;
            open(child);
            stack.push_back({child, childrenOf(child)});
        } else {
            close(top.node);
            stack.pop_back();
        }
    }
    return out;
}

void HTMLNode::appendChildContentsToString(QString& string, xmlNode* node) const
{
    walkFrom(node, [&string](xmlNode* n) {
        if (const char* content = storedContentOf(n))
            string += textFromCString(content);
        return false;
    });
}
