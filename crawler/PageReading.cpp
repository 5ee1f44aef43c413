#include "crawler/PageReading.h"

#include "html/PageFactsReader.h"
#include "html/StringOperations.h"

PageReadingPtr PageReading::read(const QByteArray& data, const QString& url, const QString& path,
                                 const QString& projectURL, bool exploreNoFollow)
{
    if (data.isNull())
        return nullptr;
    auto reading = std::make_shared<PageReading>();
    reading->url = url;
    reading->path = path;
    try {
        reading->facts = PageFactsReader::read(data);
    } catch (...) {
        reading->fault = std::current_exception();
        reading->facts = PageFacts();
        return reading;
    }
    const QList<AnchorFacts>& anchors = reading->facts.anchors;
    reading->links.reserve(anchors.size());
    for (const AnchorFacts& anchor : anchors) {
        try {
            reading->links.append(isFollowedAnchor(anchor, exploreNoFollow)
                                      ? HTMLLink::initWithAnchorFacts(anchor, path, url, projectURL)
                                      : HTMLLinkPtr());
        } catch (...) {
            reading->fault = std::current_exception();
            reading->faultIndex = reading->links.size();
            break;
        }
    }
    // Past a fault, no link.
    while (reading->links.size() < anchors.size())
        reading->links.append(HTMLLinkPtr());
    return reading;
}

bool PageReading::isFollowedAnchor(const AnchorFacts& anchor, bool exploreNoFollow)
{
    const QString& rawHref = anchor.href;
    if (rawHref.isNull())
        return false;
    if (anchor.rel == QLatin1String("nofollow") && !exploreNoFollow)
        return false;
    const QString href = stringByTrim(rawHref);
    if (href.size() >= 7 && hasPrefixCaseInsensitive(href, QStringLiteral("mailto:")))
        return false;
    if (href.size() >= 11 && hasPrefixCaseInsensitive(href, QStringLiteral("javascript:")))
        return false;
    return true;
}
