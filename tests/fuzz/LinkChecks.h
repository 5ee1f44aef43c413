#pragma once

// Invariants of a resolved link and of the path operations, shared by the targets that
// build links (from parsed pages and from bare strings).

#include "FuzzSupport.h"

#include "html/HTMLLink.h"
#include "html/PathOperations.h"
#include "html/StringOperations.h"

namespace fuzz {

inline void checkPathOperations(const QString& a, const QString& b)
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

inline void checkLink(const HTMLLink& link)
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

} // namespace fuzz
