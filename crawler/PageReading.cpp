#include "crawler/PageReading.h"

#include "html/StringOperations.h"

PageReadingPtr PageReading::read(const QByteArray& data, const QString& url, const QString& path,
                                 const QString& projectURL, bool exploreNoFollow)
{
    if (data.isNull())
        return nullptr;
    auto reading = std::make_shared<PageReading>();
    reading->url = url;
    reading->path = path;
    AppError parseError;
    reading->parser = HTMLParser::initWithData(data, &parseError);
    if (!reading->parser || parseError.code != 0) {
        reading->parser.reset();
        return reading;
    }
    try {
        if (const HTMLNodePtr body = reading->parser->body())
            reading->anchors = body->findChildTags(QStringLiteral("a"));
    } catch (...) {
        reading->fault = std::current_exception();
        reading->anchors.clear();
        return reading;
    }
    reading->links.reserve(reading->anchors.size());
    for (const HTMLNodePtr& anchor : reading->anchors) {
        try {
            reading->links.append(isFollowedAnchor(anchor, exploreNoFollow)
                                      ? HTMLLink::initWithHTMLNode(anchor, path, url, projectURL)
                                      : HTMLLinkPtr());
        } catch (...) {
            reading->fault = std::current_exception();
            reading->faultIndex = reading->links.size();
            break;
        }
    }
    // Past a fault, no link.
    while (reading->links.size() < reading->anchors.size())
        reading->links.append(HTMLLinkPtr());
    return reading;
}

bool PageReading::isFollowedAnchor(const HTMLNodePtr& anchor, bool exploreNoFollow)
{
    const QString rawHref = anchor->getAttributeNamed(QStringLiteral("href"));
    if (rawHref.isNull())
        return false;
    if (anchor->getAttributeNamed(QStringLiteral("rel")) == QLatin1String("nofollow") && !exploreNoFollow)
        return false;
    const QString href = stringByTrim(rawHref);
    if (href.size() >= 7 && hasPrefixCaseInsensitive(href, QStringLiteral("mailto:")))
        return false;
    if (href.size() >= 11 && hasPrefixCaseInsensitive(href, QStringLiteral("javascript:")))
        return false;
    return true;
}
