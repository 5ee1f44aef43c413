// Feeds random bytes to the HTML parser and the node queries the page analysis uses, and
// builds a link from each of the first anchors found. Link resolution from bare strings and
// the robots.txt rules have targets of their own (fuzz_links, fuzz_robots).
// The only exception allowed to escape is RangeException (the page analysis catches it);
// anything else, a sanitizer report or a broken invariant aborts.
//
// Input: the first byte selects the mode (even: bytes as received, odd: a UTF-8 string page),
// the rest is the page.

#include "LinkChecks.h"

#include "html/HTMLLink.h"
#include "html/HTMLNode.h"
#include "html/HTMLParser.h"
#include "html/RobotsTxt.h"
#include "html/StringOperations.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdint>

namespace {

using fuzz::check;
using fuzz::guarded;

const QStringList kBases{QStringLiteral("http://www.example.com/"), QStringLiteral("http://example.com"),
                         QStringLiteral("https://www.example.com/dir/")};
const QStringList kPaths{QStringLiteral("/a/b"), QStringLiteral("/"), QStringLiteral("")};

QList<RobotEntryPtr> fixedRules()
{
    QList<RobotEntryPtr> rules;
    loadRobotsTxtToArray(QStringLiteral("User-agent: *\nDisallow: /private\nDisallow: /*.pdf\nDisallow: /a/*/b\n"), rules);
    return rules;
}

// One of the base and path combinations per anchor keeps each input cheap.
void exerciseAnchor(const HTMLNodePtr& anchor, qsizetype index, const QList<RobotEntryPtr>& rules)
{
    const QString& base = kBases[index % kBases.size()];
    const QString& path = kPaths[(index / kBases.size()) % kPaths.size()];
    guarded([&] {
        HTMLLinkPtr link = HTMLLink::initWithHTMLNode(anchor, path, base + QStringLiteral("page.html"), base);
        fuzz::checkLink(*link);
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
    fuzz::runInput([&] {
        if (data[0] % 2 == 0)
            fuzzPage(payload);
        else
            fuzzStringPage(QString::fromUtf8(payload));
    });
    return 0;
}
