#pragma once

#include "cli/CrawlProgress.h"
#include "crawler/RecordKeepingDelegate.h"
#include "crawler/VacuumCleanerDelegate.h"

#include <QElapsedTimer>

#include <functional>
#include <memory>

class Project;

// The command line's crawl delegate: the main window's decisions without a window. It keeps
// the records and shows the progress of the crawl and of the vacuum.
class CliCrawlController : public RecordKeepingDelegate, public VacuumCleanerDelegate {
public:
    explicit CliCrawlController(std::shared_ptr<Project> project);

    // Called on the main thread when a vacuum has ended.
    void setFinishedHandler(std::function<void()> handler) { finished_ = std::move(handler); }

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
    CrawlProgress progress_;
    std::function<void()> finished_;
    QString endError_;
    qint64 waiting_ = 0;
    qint64 done_ = 0;
    QElapsedTimer timer_;
    double crawlSeconds_ = 0;
};
