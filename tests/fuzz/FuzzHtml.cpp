// Feeds random bytes to the HTML parser and node queries, random hrefs, paths and base URLs
// to the link resolution and the path operations, and random text to the robots.txt rules.
// The only exception allowed to escape is RangeException (the page analysis catches it);
// anything else, a sanitizer report or a broken invariant aborts.
//
// Input: first byte selects the mode, the rest is the payload. For the string modes the
// payload holds newline-separated fields: href, current path, base URL, robots.txt text.

#include "html/HTMLLink.h"
#include "html/HTMLNode.h"
#include "html/HTMLParser.h"
#include "html/PathOperations.h"
#include "html/RangeException.h"
#include "html/RobotEntryFullURL.h"
#include "html/RobotEntryJokerURL.h"
#include "html/RobotsTxt.h"
#include "html/StringOperations.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {

[[noreturn]] void fail(const char* what, const QString& detail = QString())
{
    std::fprintf(stderr, "fuzz_html: %s [%s]\n", what, detail.toUtf8().constData());
    std::abort();
}

void check(bool condition, const char* what, const QString& detail = QString())
{
    if (!condition)
        fail(what, detail);
}

// Runs one step; a range fault ends only that step.
template <typename Step>
void guarded(Step step)
{
    try {
        step();
    } catch (const RangeException&) {
    }
}

const QStringList kBases{QStringLiteral("http://www.example.com/"), QStringLiteral("http://example.com"),
                         QStringLiteral("https://www.example.com/dir/")};
const QStringList kPaths{QStringLiteral("/a/b"), QStringLiteral("/"), QStringLiteral("")};

QList<RobotEntryPtr> fixedRules()
{
    QList<RobotEntryPtr> rules;
    loadRobotsTxtToArray(QStringLiteral("User-agent: *\nDisallow: /private\nDisallow: /*.pdf\nDisallow: /a/*/b\n"), rules);
    return rules;
}

void checkPathOperations(const QString& a, const QString& b)
{
    using namespace PathOperations;
    const QString standard = Standardize(a);
    check(!standard.contains(QStringLiteral("//")), "Standardize left a run of slashes", a);
    check(standard == QLatin1String("/") || !standard.endsWith(QLatin1Char('/')), "Standardize left a trailing slash", a);
    check(Standardize(standard) == standard, "Standardize is not idempotent", a);
    for (const QString& c : Components(standard)) {
        check(!c.isEmpty(), "empty component", a);
        check(c != QLatin1String("."), "dot component after Standardize", a);
    }
    const QString joined = Join(a, b);
    check(!joined.contains(QStringLiteral("//")), "Join left a run of slashes", a + QLatin1Char('|') + b);
    const QString parent = Parent(a);
    check(!parent.contains(QStringLiteral("//")), "Parent left a run of slashes", a);
    check(parent.length() <= a.length(), "Parent grew", a);
    (void)stringByTrim(a);
    guarded([&] {
        const QString cut = stringWithoutLastSlash(a);
        check(cut.length() == a.length() - (a.endsWith(QLatin1Char('/')) ? 1 : 0), "stringWithoutLastSlash", a);
    });
    (void)hasPrefixCaseInsensitive(a, b);
    (void)isEqualCaseInsensitive(a, b);
}

void checkLink(const HTMLLink& link)
{
    static const QStringList kCodes{QStringLiteral("L0"), QStringLiteral("L1"), QStringLiteral("L2"),
                                    QStringLiteral("L3"), QStringLiteral("L4"), QStringLiteral("L5.1"),
                                    QStringLiteral("L5.2"), QStringLiteral("L6")};
    check(kCodes.contains(link.debugHRef()), "unknown resolution code", link.debugHRef());
    check(link.debugAnchor().size() == 2 && link.debugAnchor().startsWith(QLatin1Char('A')), "unknown anchor code",
          link.debugAnchor());
    check(!link.anchor().isNull(), "null anchor");
    if (link.href().isNull()) {
        check(link.fullHref().isNull(), "fullHref without href");
        check(link.debugHRef() == QLatin1String("L0"), "resolved without href");
    }
    check(!link.fullHref().contains(QLatin1Char('#')), "fragment kept", link.fullHref());
    if (link.isExternalLink())
        check(link.documentPath().isNull() && link.documentName().isNull(), "external link has a document");
    else if (!link.fullHref().isNull())
        check(!link.documentPath().isNull() && !link.documentName().isNull(), "internal link without document",
              link.fullHref());
    (void)link.description();
}

// One of the base and path combinations per anchor keeps each input cheap.
void exerciseAnchor(const HTMLNodePtr& anchor, qsizetype index, const QList<RobotEntryPtr>& rules)
{
    const QString& base = kBases[index % kBases.size()];
    const QString& path = kPaths[(index / kBases.size()) % kPaths.size()];
    guarded([&] {
        HTMLLinkPtr link = HTMLLink::initWithHTMLNode(anchor, path, base + QStringLiteral("page.html"), base, nullptr);
        checkLink(*link);
        if (!link->isExternalLink())
            guarded([&] { (void)link->isAllowedURLwithArrayOfDisallowed(rules); });
    });
}

// Queries that read one node and its neighbours.
void exerciseNode(const HTMLNodePtr& node)
{
    if (!node)
        return;
    (void)node->tagName();
    (void)node->className();
    (void)node->nodetype();
    (void)node->contents();
    (void)node->getAttributeNamed(QStringLiteral("href"));
    (void)node->parent()->tagName();
    (void)node->firstChild()->nextSibling()->previousSibling()->contents();
    for (const HTMLNodePtr& child : node->children())
        (void)child->nodetype();
}

// Queries that walk the whole subtree.
void exerciseSubtree(const HTMLNodePtr& node)
{
    if (!node)
        return;
    exerciseNode(node);
    (void)node->allContents();
    (void)node->rawContents();
    (void)node->description();
    (void)node->findChildWithAttribute(QStringLiteral("class"), QStringLiteral("a"), true);
    (void)node->findChildrenWithAttribute(QStringLiteral("id"), QStringLiteral(""), false);
    (void)node->findChildrenOfClass(QStringLiteral("x"));
    QString text;
    node->appendChildContentsToString(text, node->node() ? node->node()->children : nullptr);
}

void exerciseParser(const HTMLParserPtr& parser)
{
    check(bool(parser), "no parser");
    exerciseSubtree(parser->doc());
    exerciseNode(parser->html());
    if (HTMLNodePtr head = parser->head()) {
        exerciseNode(head);
        if (HTMLNodePtr title = head->findChildTag(QStringLiteral("title")))
            (void)stringByTrim(title->contents());
        for (const HTMLNodePtr& meta : head->findChildTags(QStringLiteral("meta")))
            (void)meta->getAttributeNamed(QStringLiteral("content"));
    }
    if (HTMLNodePtr body = parser->body()) {
        exerciseNode(body);
        static const QList<RobotEntryPtr> rules = fixedRules();
        const QList<HTMLNodePtr> anchors = body->findChildTags(QStringLiteral("a"));
        for (qsizetype i = 0; i < anchors.size() && i < 8; ++i) {
            exerciseNode(anchors[i]);
            exerciseAnchor(anchors[i], i, rules);
        }
    }
}

void fuzzPage(const QByteArray& bytes)
{
    AppError error;
    exerciseParser(HTMLParser::initWithData(bytes, &error));
}

void fuzzStringPage(const QString& text)
{
    AppError error;
    HTMLParserPtr parser = HTMLParser::initWithString(text, &error);
    check(text.isEmpty() == (error.code == 1), "error slot and empty string disagree");
    exerciseParser(parser);
}

void fuzzRobots(const QString& text)
{
    QList<RobotEntryPtr> rules;
    loadRobotsTxtToArray(text, rules);
    for (const RobotEntryPtr& rule : rules) {
        check(bool(rule), "null rule");
        if (auto full = std::dynamic_pointer_cast<RobotEntryFullURL>(rule)) {
            check(full->robotEntryValue().size() >= 2 && full->robotEntryValue().startsWith(QLatin1Char('/')),
                  "bad prefix rule", full->robotEntryValue());
            check(full->isURLDisallowed(full->robotEntryValue()), "prefix rule does not match itself");
        } else if (auto joker = std::dynamic_pointer_cast<RobotEntryJokerURL>(rule)) {
            check(!joker->robotEntryValue().contains(QLatin1Char('*')), "star left in fragment rule");
        } else {
            fail("rule of the base class");
        }
        (void)rule->description();
    }
    (void)isAllowedURLWithArrayOfDisallowed(QStringLiteral("/private/x"), rules);
    (void)isAllowedURLWithArrayOfDisallowed(text, rules);
}

void fuzzLinkStrings(const QStringList& fields)
{
    const QString href = fields.value(0);
    const QString path = fields.value(1);
    const QString base = fields.value(2);
    const QString robots = fields.mid(3).join(QLatin1Char('\n'));

    checkPathOperations(href, path);
    checkPathOperations(path, base);
    checkPathOperations(base, href);

    // A real element carrying the href, with the href as its text as well.
    xmlDocPtr doc = xmlNewDoc(BAD_CAST "1.0");
    xmlNodePtr anchor = xmlNewNode(nullptr, BAD_CAST "a");
    xmlDocSetRootElement(doc, anchor);
    const QByteArray hrefBytes = href.toUtf8();
    xmlNewProp(anchor, BAD_CAST "href", BAD_CAST hrefBytes.constData());
    xmlNodeAddContent(anchor, BAD_CAST hrefBytes.constData());
    const HTMLNodePtr node = HTMLNode::initWithXMLNode(anchor);

    QList<RobotEntryPtr> rules;
    loadRobotsTxtToArray(robots, rules);
    guarded([&] {
        HTMLLinkPtr link = HTMLLink::initWithHTMLNode(node, path, base, base, nullptr);
        checkLink(*link);
        guarded([&] { (void)link->isAllowedURLwithArrayOfDisallowed(rules); });
    });
    const QString& fixedBase = kBases[href.size() % kBases.size()];
    guarded([&] { checkLink(*HTMLLink::initWithHTMLNode(node, path, fixedBase, fixedBase, nullptr)); });
    guarded([&] {
        HTMLLink link;
        link.extractPathAndDocumentWithURL(href, fixedBase);
        check(!link.documentPath().isNull() || href.isNull(), "no document path", href);
    });
    guarded([&] {
        QString directory;
        QString name;
        HTMLLink::extractFromHRef(href, path, directory, name);
        check(!directory.isNull() && !name.isNull(), "null extraction output");
    });
    for (const RobotEntryPtr& rule : rules)
        (void)rule->isURLDisallowed(href);
    xmlFreeDoc(doc);
    fuzzRobots(robots);
}

// Any sequence of UTF-16 code units, lone surrogates included.
QString utf16From(const QByteArray& bytes)
{
    QString text;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        text.append(QChar(static_cast<char16_t>(static_cast<unsigned char>(bytes[i])
                                                | (static_cast<unsigned char>(bytes[i + 1]) << 8))));
    return text;
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
    try {
        switch (data[0] % 5) {
        case 0:
            fuzzPage(payload);
            break;
        case 1:
            fuzzStringPage(QString::fromUtf8(payload));
            break;
        case 2:
            fuzzLinkStrings(QString::fromUtf8(payload).split(QLatin1Char('\n')));
            break;
        case 3:
            fuzzLinkStrings(utf16From(payload).split(QLatin1Char('\n')));
            break;
        case 4:
            fuzzRobots(QString::fromUtf8(payload));
            break;
        }
    } catch (const RangeException&) {
        // The one fault the page analysis expects.
    } catch (const std::exception& e) {
        fail("unexpected exception", QString::fromUtf8(e.what()));
    } catch (...) {
        fail("unexpected exception of unknown type");
    }
    return 0;
}
