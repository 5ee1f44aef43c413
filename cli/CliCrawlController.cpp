#include "cli/CliCrawlController.h"

#include "base/DebugTrace.h"
#include "store/Project.h"

CliCrawlController::CliCrawlController(std::shared_ptr<Project> project) : project_(project)
{
    setProject(project);
}

void CliCrawlController::downloaderDidStart()
{
    DebugTrace("downloaderDidStart");
    timer_.start();
    keeper().crawlDidStart();
}

void CliCrawlController::downloaderDidEnd()
{
    DebugTrace("downloaderDidEnd");
    crawlSeconds_ = timer_.isValid() ? double(timer_.nsecsElapsed()) / 1e9 : 0.0;
    keeper().crawlDidEnd(&waiting_, &done_);
    progress_.queue(waiting_, done_);
}

void CliCrawlController::downloaderEndWithError(const QString& error)
{
    endError_ = error;
}

void CliCrawlController::downloadPageDidStartWithURL(const QString& url, qint32 depth)
{
    DebugTrace("  downloadPageDidStartWithURL:(%s) andDepth:(%d)", qPrintable(url), depth);
    keeper().pageDidStart(url, depth);
    progress_.page(keeper().pageCount(), depth, url);
}

void CliCrawlController::downloadPageDidEndWithURL(const QString& url, qint32 depth)
{
    DebugTrace("  downloadPageDidEndWithURL:(%s) andDepth:(%d)", qPrintable(url), depth);
}

void CliCrawlController::initLinkProgressWithMaxValue(qint32) {}

void CliCrawlController::setLinkProgressWithValue(qint32, qint32) {}

void CliCrawlController::setWaitingQueueCount(qint32 waitingCount, qint32 doneCount)
{
    progress_.queue(waitingCount, doneCount);
}

void CliCrawlController::vacuumCleanerDidStart() {}

void CliCrawlController::vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex)
{
    progress_.vacuum(currentIndex, maxIndex);
}

void CliCrawlController::vacuumingPage(const QuillmerePagePtr&) {}

void CliCrawlController::vacuumCleanerDidEnd()
{
    if (finished_)
        finished_();
}
