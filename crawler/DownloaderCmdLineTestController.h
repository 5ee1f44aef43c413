#pragma once

#include "crawler/RecordKeepingDelegate.h"

#include <functional>
#include <memory>

class OperationQueue;
class DownloaderOperationLibXML;
class Project;

// The minimal headless crawl: one new project for one URL, no limits, and only the record
// keeping a crawl needs. It must stay alive, with the main event loop running, until
// downloaderDidEnd has arrived.
class DownloaderCmdLineTestController : public RecordKeepingDelegate,
                                        public std::enable_shared_from_this<DownloaderCmdLineTestController> {
public:
    DownloaderCmdLineTestController();
    ~DownloaderCmdLineTestController() override;

    // Creates the project and queues its crawl; returns at once.
    void launchTestWithURL(const QString& url, const QString& projectName);
    // Queues the crawl of a project made already; returns at once. `prepare`, when given,
    // sets up the operation before it is queued.
    void launchTestWithProject(const std::shared_ptr<Project>& project,
                               const std::function<void(DownloaderOperationLibXML&)>& prepare = {});

    OperationQueue* operationsQueue() const { return operationsQueue_.get(); }
    std::shared_ptr<Project> project() const { return project_; }
    std::shared_ptr<DownloaderOperationLibXML> downloaderOperation() const { return operation_; }

    void downloaderDidStart() override;
    void downloaderDidEnd() override;
    void downloaderEndWithError(const QString& error) override;
    void downloadPageDidStartWithURL(const QString& url, qint32 depth) override;
    void downloadPageDidEndWithURL(const QString& url, qint32 depth) override;
    void updatePage(const QuillmerePagePtr& page, const QString& title) override;
    void initLinkProgressWithMaxValue(qint32 linkCountMax) override;
    void setLinkProgressWithValue(qint32 value, qint32 maxValue) override;
    void setWaitingQueueCount(qint32 waitingCount, qint32 doneCount) override;

private:
    std::unique_ptr<OperationQueue> operationsQueue_;
    std::shared_ptr<Project> project_;
    std::shared_ptr<DownloaderOperationLibXML> operation_;
};
