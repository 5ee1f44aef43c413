#include "crawler/CrawlAndVacuum.h"

#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/MainThread.h"
#include "crawler/OperationQueue.h"
#include "crawler/VacuumCleanerOperation.h"

void CrawlAndVacuum::start(OperationQueue* queue, const std::shared_ptr<DownloaderOperationLibXML>& crawl,
                           const std::shared_ptr<Project>& project, std::shared_ptr<VacuumCleanerDelegate> vacuumDelegate,
                           VacuumQueued vacuumQueued, std::function<void()> finished)
{
    auto vacuum = VacuumCleanerOperation::initWithProject(project, std::move(vacuumDelegate));
    if (finished)
        vacuum->setCompletionBlock([finished] { MainThread::post(finished); });
    // On the queue's thread, once the crawl's end steps have been taken.
    crawl->setCompletionBlock([queue, vacuum, vacuumQueued] {
        if (vacuumQueued)
            MainThread::performAndWait([&] { vacuumQueued(vacuum); });
        queue->addOperation(vacuum);
    });
    queue->addOperation(crawl);
}
