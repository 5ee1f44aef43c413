#pragma once

#include <functional>
#include <memory>

class DownloaderOperationLibXML;
class OperationQueue;
class Project;
class VacuumCleanerDelegate;
class VacuumCleanerOperation;

// Every crawl, finished or stopped, is followed by the vacuum, on the same queue: what each
// front end starts. The vacuum is queued by the crawl's operation as it returns, before the
// queue counts the crawl as done, so the queue never looks idle between the two.
class CrawlAndVacuum {
public:
    // Called on the main thread, before the vacuum's first call reaches its delegate.
    using VacuumQueued = std::function<void(const std::shared_ptr<VacuumCleanerOperation>&)>;

    // Queues `crawl`, then the vacuum of `project` with `vacuumDelegate`. `vacuumQueued` (may
    // be empty) learns of the vacuum; `finished` (may be empty) is posted to the main thread
    // once the vacuum has ended.
    static void start(OperationQueue* queue, const std::shared_ptr<DownloaderOperationLibXML>& crawl,
                      const std::shared_ptr<Project>& project, std::shared_ptr<VacuumCleanerDelegate> vacuumDelegate,
                      VacuumQueued vacuumQueued, std::function<void()> finished);
};
