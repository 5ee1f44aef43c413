#include "html/PageFactsReader.h"

#include "html/CStringDecoding.h"

#include <libxml/HTMLparser.h>
#include <libxml/HTMLtree.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

enum class Kind : unsigned char { None, Text, CData, Other };

// One element of the tree the builder would have made. The parser sees `node` as its current
// node; it only ever reads that node's type and last child, so a blank element does.
struct Element {
    xmlNode node;
    Element* parent;
    Kind lastChild;
    bool inHead;
    bool inBody;
    // The first child is a text node that is still the last child: characters join it.
    bool firstChildOpen;
    // For a title or an anchor: index of the slot keeping its first child's text, else -1.
    int textSlot;
    int anchor;  // index in the page's anchors, -1 for any other element
    size_t lastTextLength;
};

struct TextSlot {
    std::string text;
    bool isNull = true;
};

class Reader {
public:
    explicit Reader(PageFacts& facts) : facts_(facts) {}

    static Reader& of(void* ctx) { return *static_cast<Reader*>(static_cast<xmlParserCtxtPtr>(ctx)->_private); }
    static Element* current(xmlParserCtxtPtr ctxt)
    {
        return ctxt->node ? static_cast<Element*>(ctxt->node->_private) : nullptr;
    }

    static void startDocument(void* ctx) { of(ctx).hasDocument_ = true; }

    static void internalSubset(void* ctx, const xmlChar*, const xmlChar*, const xmlChar*)
    {
        Reader& r = of(ctx);
        if (!r.hasDocument_ || r.hasDtd_)
            return;
        // The document type node goes in front of the document's children.
        r.hasDtd_ = true;
        r.documentHasChildren_ = true;
        r.documentFirstElement_ = nullptr;
    }

    static void startElement(void* ctx, const xmlChar* fullname, const xmlChar** atts)
    {
        auto* ctxt = static_cast<xmlParserCtxtPtr>(ctx);
        Reader& r = of(ctx);
        if (!fullname || !r.hasDocument_)
            return;
        // The tree keeps the part of the name after a prefix; splitting it may also end the
        // parse (a part that does not start as a name should), so the library does it.
        const char* name = reinterpret_cast<const char*>(fullname);
        xmlChar* split = nullptr;
        if (std::strchr(name, ':')) {
            xmlChar* prefix = nullptr;
            split = xmlSplitQName(ctxt, fullname, &prefix);
            xmlFree(prefix);
            if (!split)
                return;
            name = reinterpret_cast<const char*>(split);
        }
        r.startElementNamed(ctxt, name, atts);
        xmlFree(split);
    }

    static void endElement(void* ctx, const xmlChar*)
    {
        auto* ctxt = static_cast<xmlParserCtxtPtr>(ctx);
        ctxt->nodemem = -1;
        nodePop(ctxt);
    }

    static void characters(void* ctx, const xmlChar* ch, int len) { of(ctx).text(ch, len, Kind::Text); }
    static void cdataBlock(void* ctx, const xmlChar* ch, int len) { of(ctx).text(ch, len, Kind::CData); }

    static void comment(void* ctx, const xmlChar* value) { of(ctx).otherNode(value); }

    static void processingInstruction(void* ctx, const xmlChar* target, const xmlChar* data)
    {
        if (target)  // a nameless one makes no node
            of(ctx).otherNode(data);
    }

    void setContext(xmlParserCtxtPtr ctxt) { ctxt_ = ctxt; }

    void finish()
    {
        if (title_ >= 0)
            facts_.titleText = textOf(title_);
        for (const Element* anchor : anchorElements_)
            facts_.anchors[anchor->anchor].firstChildText = textOf(anchor->textSlot);
    }

private:
    static bool is(const char* a, const char* b) { return std::strcmp(a, b) == 0; }

    Element* newElement()
    {
        if (used_ == kChunk || chunks_.empty()) {
            chunks_.push_back(std::make_unique<Element[]>(kChunk));
            used_ = 0;
        }
        Element* e = &chunks_.back()[used_++];
        std::memset(&e->node, 0, sizeof(e->node));
        e->node.type = XML_ELEMENT_NODE;
        e->node._private = e;
        e->parent = nullptr;
        e->lastChild = Kind::None;
        e->inHead = e->inBody = e->firstChildOpen = false;
        e->textSlot = e->anchor = -1;
        e->lastTextLength = 0;
        return e;
    }

    void dropLastElement() { --used_; }

    // A child node joins parent: the first child's text is kept when the parent wants it.
    void addChild(Element* parent, Kind kind, const xmlChar* content, int length)
    {
        const bool first = parent->lastChild == Kind::None;
        parent->firstChildOpen = first && (kind == Kind::Text || kind == Kind::CData);
        parent->lastChild = kind;
        if (first && parent->textSlot >= 0 && content) {
            TextSlot& slot = slots_[parent->textSlot];
            slot.isNull = false;
            slot.text.assign(reinterpret_cast<const char*>(content),
                             length < 0 ? std::strlen(reinterpret_cast<const char*>(content)) : size_t(length));
        }
    }

    void startElementNamed(xmlParserCtxtPtr ctxt, const char* name, const xmlChar** atts)
    {
        Element* parent = current(ctxt);
        Element* e = newElement();
        const bool becomesRoot = !documentHasChildren_;
        if (becomesRoot) {
            documentHasChildren_ = true;
            documentFirstElement_ = e;
        } else if (!parent) {
            // Outside every element: the builder hangs it under the document's first child,
            // or beside it when that child is not an element.
            parent = documentFirstElement_;
        }
        ctxt->nodemem = -1;
        if (nodePush(ctxt, &e->node) < 0) {
            // Too deep: the builder drops the node and the parser stops.
            if (becomesRoot) {
                documentHasChildren_ = false;
                documentFirstElement_ = nullptr;
            }
            dropLastElement();
            return;
        }
        if (parent) {
            addChild(parent, Kind::Other, nullptr, 0);
            e->parent = parent;
            e->inHead = parent->inHead || parent == firstHead_;
            e->inBody = parent->inBody || parent == firstBody_;
        }
        if (is(name, "head")) {
            if (!firstHead_)
                firstHead_ = e;
        } else if (is(name, "body")) {
            if (!firstBody_)
                firstBody_ = e;
        } else if (is(name, "a")) {
            if (e->inBody)
                startAnchor(e, atts);
        } else if (is(name, "img")) {
            startImage(e, atts);
        } else if (e->inHead) {
            if (is(name, "title")) {
                if (title_ < 0)
                    title_ = e->textSlot = newSlot();
            } else if (is(name, "meta")) {
                facts_.metas.append({attribute(atts, "name"), attribute(atts, "content")});
            } else if (is(name, "link")) {
                facts_.links.append({attribute(atts, "rel"), attribute(atts, "href")});
            }
        }
    }

    void startAnchor(Element* e, const xmlChar** atts)
    {
        AnchorFacts anchor;
        anchor.href = attribute(atts, "href");
        anchor.rel = attribute(atts, "rel");
        anchor.alt = attribute(atts, "alt");
        anchor.title = attribute(atts, "title");
        e->anchor = int(facts_.anchors.size());
        e->textSlot = newSlot();
        facts_.anchors.append(anchor);
        anchorElements_.push_back(e);
    }

    // The first image inside an anchor, at any depth, is that anchor's image.
    void startImage(Element* e, const xmlChar** atts)
    {
        for (Element* up = e->parent; up; up = up->parent) {
            if (up->anchor < 0)
                continue;
            AnchorFacts& anchor = facts_.anchors[up->anchor];
            if (anchor.hasImage)
                continue;
            anchor.hasImage = true;
            anchor.imageAlt = attribute(atts, "alt");
            anchor.imageSource = attribute(atts, "src");
        }
    }

    // Characters join the current element's last child when it is text of the same kind,
    // else start a new child. The size check is the builder's own, which ends the parse.
    void text(const xmlChar* ch, int len, Kind kind)
    {
        Element* e = current(ctxt_);
        if (!e)
            return;
        if (e->lastChild == Kind::None || e->lastChild != kind) {
            addChild(e, kind, ch, len);
            e->lastTextLength = size_t(len);
            ctxt_->nodelen = len;
            ctxt_->nodemem = len + 1;
            return;
        }
        if (ctxt_->nodemem != 0) {
            if (size_t(ctxt_->nodelen) + size_t(len) > XML_MAX_TEXT_LENGTH
                && (ctxt_->options & XML_PARSE_HUGE) == 0) {
                ctxt_->errNo = XML_ERR_NO_MEMORY;
                ctxt_->instate = XML_PARSER_EOF;
                ctxt_->disableSAX = 1;
                return;
            }
            if (ctxt_->nodelen + len >= ctxt_->nodemem)
                ctxt_->nodemem = int((size_t(ctxt_->nodemem) + size_t(len)) * 2);
            ctxt_->nodelen += len;
        } else {
            ctxt_->nodelen = int(e->lastTextLength + size_t(len));
            ctxt_->nodemem = ctxt_->nodelen + 1;
        }
        e->lastTextLength += size_t(len);
        if (e->firstChildOpen && e->textSlot >= 0)
            slots_[e->textSlot].text.append(reinterpret_cast<const char*>(ch), size_t(len));
    }

    // A comment or a processing instruction: a node of its own, whose text is content.
    void otherNode(const xmlChar* content)
    {
        if (!hasDocument_)
            return;
        if (Element* e = current(ctxt_)) {
            addChild(e, Kind::Other, content, -1);
        } else if (!documentHasChildren_) {
            documentHasChildren_ = true;
            documentFirstElement_ = nullptr;
        }
    }

    int newSlot()
    {
        slots_.emplace_back();
        return int(slots_.size()) - 1;
    }

    QString textOf(int slot) const
    {
        if (slot < 0 || slots_[slot].isNull)
            return QString();
        return textFromBytes(QByteArrayView(slots_[slot].text.data(), qsizetype(slots_[slot].text.size())));
    }

    // The first attribute of that name, as the tree keeps it: no value gives null, except
    // for the boolean attributes, whose value is their name.
    static QString attribute(const xmlChar** atts, const char* wanted)
    {
        if (!atts)
            return QString();
        for (size_t i = 0; atts[i]; i += 2) {
            if (!is(reinterpret_cast<const char*>(atts[i]), wanted))
                continue;
            const xmlChar* value = atts[i + 1];
            if (!value && htmlIsBooleanAttr(atts[i]))
                value = atts[i];
            return value ? textFromCString(reinterpret_cast<const char*>(value)) : QString();
        }
        return QString();
    }

    static constexpr size_t kChunk = 64;

    PageFacts& facts_;
    xmlParserCtxtPtr ctxt_ = nullptr;
    std::vector<std::unique_ptr<Element[]>> chunks_;
    size_t used_ = 0;
    std::vector<TextSlot> slots_;
    std::vector<Element*> anchorElements_;
    bool hasDocument_ = false;
    bool hasDtd_ = false;
    bool documentHasChildren_ = false;
    Element* documentFirstElement_ = nullptr;
    Element* firstHead_ = nullptr;
    Element* firstBody_ = nullptr;
    int title_ = -1;
};

} // namespace

PageFacts PageFactsReader::read(const QByteArray& data)
{
    PageFacts facts;
    if (data.isNull())
        return facts;
    xmlInitParser();
    // The tree reading parses up to the first zero byte.
    const char* bytes = data.constData();
    const size_t length = strnlen(bytes, size_t(data.size()));
    htmlParserCtxtPtr ctxt = htmlCreateMemoryParserCtxt(bytes, int(length));
    if (!ctxt)
        return facts;  // nothing to parse: no document, as htmlReadDoc answers
    Reader reader(facts);
    reader.setContext(ctxt);
    ctxt->_private = &reader;
    htmlSAXHandler* sax = ctxt->sax;
    sax->startDocument = Reader::startDocument;
    sax->endDocument = nullptr;
    sax->internalSubset = Reader::internalSubset;
    sax->startElement = Reader::startElement;
    sax->endElement = Reader::endElement;
    sax->characters = Reader::characters;
    sax->cdataBlock = Reader::cdataBlock;
    sax->comment = Reader::comment;
    sax->processingInstruction = Reader::processingInstruction;
    // What htmlReadDoc does with the same options and encoding.
    htmlCtxtUseOptions(ctxt, HTMLParser::kDataParseOptions);
    ctxt->html = 1;
    if (xmlCharEncodingHandlerPtr handler = xmlFindCharEncodingHandler("UTF-8")) {
        xmlSwitchToEncoding(ctxt, handler);
        if (ctxt->input->encoding)
            xmlFree(const_cast<xmlChar*>(ctxt->input->encoding));
        ctxt->input->encoding = xmlStrdup(BAD_CAST "UTF-8");
    }
    htmlParseDocument(ctxt);
    reader.finish();
    if (ctxt->myDoc)
        xmlFreeDoc(ctxt->myDoc);
    ctxt->myDoc = nullptr;
    htmlFreeParserCtxt(ctxt);
    return facts;
}
