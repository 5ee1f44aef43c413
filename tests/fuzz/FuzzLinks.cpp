// Link resolution from bare strings, as the page analysis does it for each anchor: a random
// href, current directory path and project base URL go through HTMLLink (the resolution
// rules, the path extraction and the robots.txt test) and through the path operations
// underneath. Checks the link's invariants, that the same input resolves the same way twice,
// and that the path operations keep their shape.
//
// Input: the first byte selects the text form (odd: UTF-8, even: raw UTF-16 code units, lone
// surrogates included); the rest holds newline-separated fields: href, current path, base
// URL, then robots.txt lines.

#include "FuzzSupport.h"
#include "LinkChecks.h"

#include "html/HTMLLink.h"
#include "html/HTMLNode.h"
#include "html/RobotsTxt.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdint>

using fuzz::check;
using fuzz::guarded;

namespace {

const QStringList kBases{QStringLiteral("http://www.example.com/"), QStringLiteral("http://example.com"),
                         QStringLiteral("https://www.example.com/dir/")};

struct Resolution {
    bool threw = false;
    bool external = false;
    QString fullHref;
    QString documentPath;
    QString documentName;
    QString code;
    bool operator==(const Resolution&) const = default;
};

Resolution resolve(const HTMLNodePtr& node, const QString& path, const QString& base)
{
    Resolution r;
    try {
        HTMLLinkPtr link = HTMLLink::initWithHTMLNode(node, path, base, base);
        fuzz::checkLink(*link);
        r.external = link->isExternalLink();
        r.fullHref = link->fullHref();
        r.documentPath = link->documentPath();
        r.documentName = link->documentName();
        r.code = link->debugHRef();
    } catch (const RangeException&) {
        r.threw = true;
    }
    return r;
}

void fuzzLinkStrings(const QStringList& fields)
{
    const QString href = fields.value(0);
    const QString path = fields.value(1);
    const QString base = fields.value(2);
    const QString robots = fields.mid(3).join(QLatin1Char('\n'));

    fuzz::checkPathOperations(href, path);
    fuzz::checkPathOperations(path, base);
    fuzz::checkPathOperations(base, href);

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
        HTMLLinkPtr link = HTMLLink::initWithHTMLNode(node, path, base, base);
        fuzz::checkLink(*link);
        guarded([&] { (void)link->isAllowedURLwithArrayOfDisallowed(rules); });
    });

    const QString& fixedBase = kBases[href.size() % kBases.size()];
    const Resolution first = resolve(node, path, fixedBase);
    check(resolve(node, path, fixedBase) == first, "the same link resolved two ways", href);
    // Every rule starts from the web base or from an http(s) href.
    if (!first.threw && !first.fullHref.isNull())
        check(first.fullHref.startsWith(QLatin1String("http"), Qt::CaseInsensitive), "link outside the web",
              first.fullHref);

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
    xmlFreeDoc(doc);
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
    fuzz::runInput([&] { fuzzLinkStrings(fuzz::textFrom(data[0], payload).split(QLatin1Char('\n'))); });
    return 0;
}
