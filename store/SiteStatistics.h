#pragma once

#include <QList>
#include <QPair>
#include <QString>

#include <memory>

class Project;

// The counts the window's charts draw, over the pages of the crawl: pages by depth, pages by
// response code (the failure's name when no status came), pages by response time.
class SiteStatistics {
public:
    using Count = QPair<QString, qint64>;

    // The upper bounds, in milliseconds, of the response-time classes; a last class holds
    // everything slower than the last bound.
    static const QList<qint64>& responseTimeBounds();

    static SiteStatistics read(const std::shared_ptr<Project>& project);

    // Depth ("0", "1"...) and pages at that depth, shallowest first.
    const QList<Count>& pagesByDepth() const { return pagesByDepth_; }
    // "200", "404", "timeout"... and pages that last got that answer: codes in numeric order,
    // then failures by name. Pages never fetched are not counted.
    const QList<Count>& responseCodes() const { return responseCodes_; }
    // One count per class of responseTimeBounds() and one for the slower ones, in order;
    // pages with no measured time are not counted.
    const QList<qint64>& responseTimes() const { return responseTimes_; }

private:
    QList<Count> pagesByDepth_;
    QList<Count> responseCodes_;
    QList<qint64> responseTimes_;
};
