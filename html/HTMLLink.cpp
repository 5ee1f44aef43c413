#include "html/HTMLLink.h"

#include "html/PathOperations.h"
#include "html/RangeException.h"
#include "html/RobotsTxt.h"
#include "html/StringOperations.h"

using PathOperations::Components;
using PathOperations::Join;
using PathOperations::Parent;
using PathOperations::Standardize;

namespace {

const QLatin1Char kSlash('/');

QString printable(const QString& s)
{
    return s.isNull() ? QStringLiteral("(null)") : s;
}

// Scheme, "www." and a trailing slash removed, so that they cannot make a link external.
QString reducedURL(const QString& url)
{
    QString reduced = stringByRemovingOccurrences(url, QStringLiteral("www."));
    reduced = stringByRemovingOccurrences(reduced, QStringLiteral("https://"));
    reduced = stringByRemovingOccurrences(reduced, QStringLiteral("http://"));
    return stringWithoutLastSlash(reduced);
}

// Joining onto "http://host" leaves "http:/host"; put the second slash back. The prefix test
// ignores case but the replacement does not, and it widens every later "http:/" as well.
QString repairScheme(const QString& url)
{
    if (hasPrefixCaseInsensitive(url, QStringLiteral("http:")) && !hasPrefixCaseInsensitive(url, QStringLiteral("http://")))
        return stringByReplacingOccurrences(url, QStringLiteral("http:/"), QStringLiteral("http://"));
    if (hasPrefixCaseInsensitive(url, QStringLiteral("https:")) && !hasPrefixCaseInsensitive(url, QStringLiteral("https://")))
        return stringByReplacingOccurrences(url, QStringLiteral("https:/"), QStringLiteral("https://"));
    return url;
}

QString withoutFragment(const QString& url)
{
    const qsizetype hash = url.indexOf(QLatin1Char('#'));
    return hash < 0 ? url : url.left(hash);
}

} // namespace

HTMLLink::HTMLLink(const HTMLNodePtr& node, const QString& currentPath, const QString& currentFullURL,
                   const QString& projectBaseURL)
    : HTMLLink(node ? AnchorFacts::fromNode(*node) : AnchorFacts(), currentPath, currentFullURL, projectBaseURL)
{
}

HTMLLink::HTMLLink(const AnchorFacts& anchor, const QString& currentPath, const QString& currentFullURL,
                   const QString& projectBaseURL)
    : href_(anchor.href)
    , debugAnchor_(QStringLiteral("A0"))
    , debugHRef_(QStringLiteral("L0"))
    , currentPath_(currentPath)
    , currentFullURL_(currentFullURL)
    , projectBaseURL_(projectBaseURL)
{
    resolveAnchor(anchor);
    resolveHref();
}

HTMLLinkPtr HTMLLink::initWithHTMLNode(const HTMLNodePtr& node, const QString& currentPath,
                                       const QString& currentFullURL, const QString& projectBaseURL)
{
    return std::make_shared<HTMLLink>(node, currentPath, currentFullURL, projectBaseURL);
}

HTMLLinkPtr HTMLLink::initWithAnchorFacts(const AnchorFacts& anchor, const QString& currentPath,
                                          const QString& currentFullURL, const QString& projectBaseURL)
{
    return std::make_shared<HTMLLink>(anchor, currentPath, currentFullURL, projectBaseURL);
}

void HTMLLink::resolveAnchor(const AnchorFacts& node)
{
    // Only the first child's own text counts: an anchor that starts with an image or a span
    // falls through to the attributes.
    const QString text = stringByTrim(node.firstChildText);
    if (!text.isEmpty()) {
        anchor_ = text;
        debugAnchor_ = QStringLiteral("A1");
        return;
    }
    if (!node.alt.isNull()) {
        anchor_ = node.alt;
        debugAnchor_ = QStringLiteral("A2");
        return;
    }
    if (!node.title.isNull()) {
        anchor_ = node.title;
        debugAnchor_ = QStringLiteral("A3");
        return;
    }
    if (node.hasImage) {
        if (!node.imageAlt.isNull()) {
            anchor_ = node.imageAlt;
            debugAnchor_ = QStringLiteral("A4");
            return;
        }
        if (!node.imageSource.isNull()) {
            anchor_ = node.imageSource;
            debugAnchor_ = QStringLiteral("A5");
            return;
        }
    }
    anchor_ = QStringLiteral("html block");
    debugAnchor_ = QStringLiteral("A6");
}

void HTMLLink::resolveHref()
{
    if (href_.isNull())
        return;
    const QString& href = href_;
    const QString& base = projectBaseURL_;

    if (hasPrefixCaseInsensitive(href, QStringLiteral("http://"))
        || hasPrefixCaseInsensitive(href, QStringLiteral("https://"))) {
        resolveAbsoluteHref();
    } else if (hasPrefixCaseInsensitive(href, QStringLiteral("../"))
               || hasPrefixCaseInsensitive(href, QStringLiteral("./"))) {
        QString directory;
        QString name;
        extractFromHRef(href, currentPath_, directory, name);
        fullHref_ = Join(Join(base, directory), name);
        debugHRef_ = hasPrefixCaseInsensitive(href, QStringLiteral("../")) ? QStringLiteral("L3") : QStringLiteral("L4");
    } else if (hasPrefixCaseInsensitive(href, QStringLiteral("/"))) {
        if (href == QLatin1String("/")) {
            fullHref_ = base;
            debugHRef_ = QStringLiteral("L5.1");
        } else {
            fullHref_ = Join(base, Standardize(href));
            debugHRef_ = QStringLiteral("L5.2");
        }
    } else {
        // Everything else is a path relative to the current directory: bare fragments and
        // queries, other schemes (mailto:, ftp:...), hrefs with leading blanks.
        fullHref_ = Join(Join(base, currentPath_), Standardize(href));
        debugHRef_ = QStringLiteral("L6");
    }

    fullHref_ = withoutFragment(repairScheme(fullHref_));
    if (!isExternalLink_ && !fullHref_.isNull())
        extractPathAndDocumentWithURL(fullHref_, base);
}

void HTMLLink::resolveAbsoluteHref()
{
    const QString& href = href_;
    const QString& base = projectBaseURL_;
    fullHref_ = href;
    if (hasPrefixCaseInsensitive(href, base)) {
        debugHRef_ = QStringLiteral("L1");
        return;
    }
    // Scheme, "www." and a trailing slash do not make a link external; a host that merely
    // begins with the project's host counts as internal too.
    const QString reducedHref = reducedURL(href);
    const QString reducedBase = reducedURL(base);
    if (hasPrefixCaseInsensitive(reducedHref, reducedBase)) {
        debugHRef_ = QStringLiteral("L1");
        return;
    }
    // The project's own address in another Unicode form: the start URL was probably typed
    // differently from the site's links.
    if (isEqualCaseInsensitive(reducedHref, reducedBase))
        isPossibleFirstURLError_ = true;
    isExternalLink_ = true;
    debugHRef_ = QStringLiteral("L2");
}

void HTMLLink::extractFromHRef(const QString& href, const QString& currentPath, QString& fullPath,
                               QString& documentName)
{
    fullPath = QStringLiteral("");
    documentName = QStringLiteral("");
    QStringList base = Components(Standardize(currentPath));
    QStringList parts = Components(Standardize(href));
    if (parts.isEmpty())
        return;

    QString directory = QStringLiteral("");
    const QString name = parts.last();
    if (parts.first() != QLatin1String("/")) {
        for (const QString& component : parts) {
            if (component == QLatin1String("."))
                continue;
            if (component == QLatin1String("..")) {
                if (base.isEmpty())
                    throw RangeException("extractFromHRef: \"..\" climbs above the root");
                base.removeLast();
                continue;
            }
            base.append(component);
        }
        // Drops the name just appended (or, after a final "..", one more directory).
        if (!base.isEmpty())
            base.removeLast();
        for (const QString& component : base)
            directory += kSlash + component;
    } else {
        parts.removeLast();
        for (const QString& component : parts)
            directory += kSlash + component;
    }
    // The root component gives "//", which standardizing folds back.
    fullPath = Standardize(directory);
    documentName = name;
}

void HTMLLink::extractPathAndDocumentWithURL(const QString& url, const QString& projectBaseURL)
{
    if (url.isNull())
        return;
    QString target = url;
    QString base = projectBaseURL;
    if (target == base && !base.endsWith(kSlash)) {
        target += kSlash;
        base += kSlash;
    }
    const QString siteRoot = base.endsWith(kSlash) ? base.left(base.length() - 1) : base;
    if (target.endsWith(kSlash))
        target += QStringLiteral("index.html");
    // The base is cut by length, not matched: an internal link written with another scheme
    // or "www." form is cut at the wrong place, and the crawler files it that way.
    if (target.length() < siteRoot.length())
        throw RangeException("extractPathAndDocumentWithURL: URL shorter than the site base");
    QString relative = target.mid(siteRoot.length());
    if (relative.isNull())
        relative = QStringLiteral("");

    documentPath_ = Parent(relative);
    QString name = stringByReplacingOccurrences(relative, documentPath_, QString());
    if (name.length() >= 2 && name.startsWith(kSlash))
        name = name.mid(1);
    if (name.isNull())
        name = QStringLiteral("");
    documentName_ = name;
}

bool HTMLLink::isAllowedURLwithArrayOfDisallowed(const QList<RobotEntryPtr>& rules) const
{
    return isAllowedURLwithArrayOfDisallowed(&rules);
}

bool HTMLLink::isAllowedURLwithArrayOfDisallowed(const QList<RobotEntryPtr>* rules) const
{
    if (!rules || rules->isEmpty() || fullHref_.isNull())
        return true;
    const QString url = stringByRemovingOccurrences(fullHref_, QStringLiteral("www."));
    const QString base = stringByRemovingOccurrences(projectBaseURL_, QStringLiteral("www."));
    if (url.length() < base.length())
        throw RangeException("isAllowedURLwithArrayOfDisallowed: URL shorter than the site base");
    QString path = url.mid(base.length());
    if (path.isEmpty())
        return true;
    if (!path.startsWith(kSlash))
        path.prepend(kSlash);
    return isAllowedURLWithArrayOfDisallowed(path, *rules);
}

QString HTMLLink::description() const
{
    if (isExternalLink_)
        return QStringLiteral("External Link ") + printable(fullHref_);
    return QStringLiteral("Link (%1/%2) href(%3) fullHREF(%4) Anchor(%5)")
        .arg(printable(debugAnchor_), printable(debugHRef_), printable(href_), printable(fullHref_),
             printable(anchor_));
}
