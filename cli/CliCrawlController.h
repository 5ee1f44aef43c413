#pragma once

#include "cli/CrawlProgress.h"
#include "crawler/RecordKeepingDelegate.h"
#include "crawler/VacuumCleanerDelegate.h"

#include <QElapsedTimer>

#include <atomic>

#include <functional>
#include <memory>

class OperationQueue;
class Project;

// The command line's crawl delegate: the main window's decisions without a window. It keeps
// the records, shows progress, and runs the vacuum when a crawl ends.
class CliCrawlController : public RecordKeepingDelegate, public VacuumCleanerDelegate {
public:
    CliCrawlController(std::shared_ptr<Project> project, OperationQueue* queue, bool vacuumAfterCrawl);

    // Called on the main thread once everything (crawl, then vacuum) has ended.
    void setFinishedHandler(std::function<void()> handler) { finished_ = std::move(handler); }
    void setSelf(std::weak_ptr<CliCrawlController> self) { self_ = std::move(self); }
    // A stop asked for before the crawl started is honoured once it has.
    void setStopFlag(std::atomic<bool>* flag, std::function<bool()> stopRequested)
    {
        stopFlag_ = flag;
        stopRequested_ = std::move(stopRequested);
    }

    QString endError() const { return endError_; }
    qint64 waitingCount() const { return waiting_; }
    qint64 doneCount() const { return done_; }
    double crawlSeconds() const { return crawlSeconds_; }
    CrawlProgress& progress() { return progress_; }

    // DownloaderDelegate
    // Nothing else runs on the main thread while the crawl goes: the per-page calls are
    // taken on the crawler's thread.
    bool takesCallsOnCrawlerThread() const override { return true; }
    void downloaderDidStart() override;
    void downloaderDidEnd() override;
    void downloaderEndWithError(const QString& error) override;
    void downloadPageDidStartWithURL(const QString& url, qint32 depth) override;
    void downloadPageDidEndWithURL(const QString& url, qint32 depth) override;
    void initLinkProgressWithMaxValue(qint32 linkCountMax) override;
    void setLinkProgressWithValue(qint32 value, qint32 maxValue) override;
    void setWaitingQueueCount(qint32 waitingCount, qint32 doneCount) override;

    // VacuumCleanerDelegate
    void vacuumCleanerDidStart() override;
    void vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex) override;
    void vacuumingPage(const QuillmerePagePtr& page) override;
    void vacuumCleanerDidEnd() override;

private:
    std::shared_ptr<Project> project_;
    OperationQueue* queue_;
    bool vacuumAfterCrawl_;
    CrawlProgress progress_;
    std::function<void()> finished_;
    std::weak_ptr<CliCrawlController> self_;
    std::atomic<bool>* stopFlag_ = nullptr;
    std::function<bool()> stopRequested_;
    QString endError_;
    qint64 waiting_ = 0;
    qint64 done_ = 0;
    QElapsedTimer timer_;
    double crawlSeconds_ = 0;
};
