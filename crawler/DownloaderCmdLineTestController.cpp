#include "crawler/DownloaderCmdLineTestController.h"

#include "crawler/CrawlOperationFactory.h"

#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/OperationQueue.h"
#include "store/ApplicationDelegate.h"
#include "base/DebugTrace.h"
#include "store/Project.h"

DownloaderCmdLineTestController::DownloaderCmdLineTestController() = default;

DownloaderCmdLineTestController::~DownloaderCmdLineTestController() = default;

void DownloaderCmdLineTestController::launchTestWithURL(const QString& url, const QString& projectName)
{
    launchTestWithProject(Project::createProjectWithName(projectName, url, -1, -1));
}

void DownloaderCmdLineTestController::launchTestWithProject(const std::shared_ptr<Project>& project,
                                                            const std::function<void(DownloaderOperationLibXML&)>& prepare)
{
    project_ = project;
    if (!project_)
        return;
    setProject(project_);
    operationsQueue_ = std::make_unique<OperationQueue>();
    operationsQueue_->setMaxConcurrentOperationCount(1);
    // The operation holds its delegate; an aliasing pointer keeps that from owning this
    // controller, which owns the queue that runs the operation.
    std::shared_ptr<DownloaderDelegate> self(std::shared_ptr<DownloaderDelegate>(), this);
    operation_ = CrawlOperationFactory::operationForProject(project_, self);
    if (prepare)
        prepare(*operation_);
    operationsQueue_->addOperation(operation_);
}

void DownloaderCmdLineTestController::downloaderDidStart()
{
    DebugTrace("downloaderDidStart");
}

void DownloaderCmdLineTestController::downloaderDidEnd()
{
    DebugTrace("downloaderDidEnd");
    QuillmerePage::performWeightForProject(project_);
    if (ApplicationDelegate* delegate = ApplicationDelegate::sharedAppDelegate())
        delegate->saveContext();
}

void DownloaderCmdLineTestController::downloaderEndWithError(const QString&) {}

void DownloaderCmdLineTestController::downloadPageDidStartWithURL(const QString& url, qint32 depth)
{
    DebugTrace("  downloadPageDidStartWithURL:(%s) andDepth:(%d)", qPrintable(url), depth);
}

void DownloaderCmdLineTestController::downloadPageDidEndWithURL(const QString& url, qint32 depth)
{
    DebugTrace("  downloadPageDidEndWithURL:(%s) andDepth:(%d)", qPrintable(url), depth);
}

void DownloaderCmdLineTestController::updatePage(const QuillmerePagePtr& page, const QString& title)
{
    DebugTrace("    updatePage:(%s) withTitle:(%s)", page ? qPrintable(page->description()) : "(null)", qPrintable(title));
    RecordKeepingDelegate::updatePage(page, title);
}

void DownloaderCmdLineTestController::initLinkProgressWithMaxValue(qint32) {}

void DownloaderCmdLineTestController::setLinkProgressWithValue(qint32, qint32) {}

void DownloaderCmdLineTestController::setWaitingQueueCount(qint32, qint32) {}
