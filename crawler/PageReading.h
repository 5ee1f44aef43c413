#pragma once

#include "html/HTMLLink.h"
#include "html/PageFacts.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <exception>
#include <memory>

// A fetched page as the analysis reads it: what it reads of the head, the anchors of its body,
// and for each anchor the link it makes, null for one the crawl does not follow. It depends on the bytes
// and on the page's URL and path only, so a fetch thread can make it while the crawler's
// thread records the page before.
struct PageReading {
    PageFacts facts;
    QList<HTMLLinkPtr> links;
    // What the links were resolved against.
    QString url;
    QString path;
    // A fault while reading the anchors: the analysis meets it where it would have made it,
    // at anchor faultIndex (-1: before the first, while the anchors were gathered). The
    // links from there on are not read.
    std::exception_ptr fault;
    qsizetype faultIndex = -1;

    // Null for no data. A fault in the parse itself is thrown.
    static std::shared_ptr<PageReading> read(const QByteArray& data, const QString& url, const QString& path,
                                             const QString& projectURL, bool exploreNoFollow);
    // An anchor worth a link record: it has an href, is not a nofollow link the project
    // leaves alone, and is neither mail nor script.
    static bool isFollowedAnchor(const AnchorFacts& anchor, bool exploreNoFollow);
};

using PageReadingPtr = std::shared_ptr<PageReading>;
