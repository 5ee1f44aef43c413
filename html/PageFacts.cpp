#include "html/PageFacts.h"

namespace {

// Null and empty differ here, unlike QString's own comparison.
bool same(const QString& a, const QString& b)
{
    return a.isNull() == b.isNull() && a == b;
}

QString shown(const QString& s)
{
    return s.isNull() ? QStringLiteral("(null)") : QLatin1Char('"') + s + QLatin1Char('"');
}

QString attribute(const HTMLNodePtr& node, const char* name)
{
    return node->getAttributeNamed(QLatin1String(name));
}

} // namespace

AnchorFacts AnchorFacts::fromNode(const HTMLNode& anchor)
{
    AnchorFacts facts;
    facts.href = anchor.getAttributeNamed(QStringLiteral("href"));
    facts.rel = anchor.getAttributeNamed(QStringLiteral("rel"));
    facts.alt = anchor.getAttributeNamed(QStringLiteral("alt"));
    facts.title = anchor.getAttributeNamed(QStringLiteral("title"));
    facts.firstChildText = anchor.contents();
    if (const HTMLNodePtr image = anchor.findChildTag(QStringLiteral("img"))) {
        facts.hasImage = true;
        facts.imageAlt = attribute(image, "alt");
        facts.imageSource = attribute(image, "src");
    }
    return facts;
}

bool AnchorFacts::operator==(const AnchorFacts& other) const
{
    return same(href, other.href) && same(rel, other.rel) && same(alt, other.alt) && same(title, other.title)
        && same(firstChildText, other.firstChildText) && hasImage == other.hasImage
        && same(imageAlt, other.imageAlt) && same(imageSource, other.imageSource);
}

bool HeadElementFacts::operator==(const HeadElementFacts& other) const
{
    return same(first, other.first) && same(second, other.second);
}

PageFacts PageFacts::fromDocument(const HTMLParser& parser)
{
    PageFacts facts;
    if (const HTMLNodePtr head = parser.head()) {
        if (const HTMLNodePtr title = head->findChildTag(QStringLiteral("title")))
            facts.titleText = title->contents();
        for (const HTMLNodePtr& meta : head->findChildTags(QStringLiteral("meta")))
            facts.metas.append({attribute(meta, "name"), attribute(meta, "content")});
        for (const HTMLNodePtr& link : head->findChildTags(QStringLiteral("link")))
            facts.links.append({attribute(link, "rel"), attribute(link, "href")});
    }
    if (const HTMLNodePtr body = parser.body()) {
        for (const HTMLNodePtr& anchor : body->findChildTags(QStringLiteral("a")))
            facts.anchors.append(AnchorFacts::fromNode(*anchor));
    }
    return facts;
}

bool PageFacts::operator==(const PageFacts& other) const
{
    return same(titleText, other.titleText) && metas == other.metas && links == other.links
        && anchors == other.anchors;
}

QString PageFacts::description() const
{
    QString out = QStringLiteral("title %1\n").arg(shown(titleText));
    for (const HeadElementFacts& meta : metas)
        out += QStringLiteral("meta name=%1 content=%2\n").arg(shown(meta.first), shown(meta.second));
    for (const HeadElementFacts& link : links)
        out += QStringLiteral("link rel=%1 href=%2\n").arg(shown(link.first), shown(link.second));
    for (const AnchorFacts& a : anchors) {
        out += QStringLiteral("a href=%1 rel=%2 alt=%3 title=%4 text=%5")
                   .arg(shown(a.href), shown(a.rel), shown(a.alt), shown(a.title), shown(a.firstChildText));
        if (a.hasImage)
            out += QStringLiteral(" img alt=%1 src=%2").arg(shown(a.imageAlt), shown(a.imageSource));
        out += QLatin1Char('\n');
    }
    return out;
}
