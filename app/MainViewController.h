#pragma once

#include "app/NewProjectWindowController.h"
#include "app/OpenProjectWindowController.h"
#include "app/PagesFilterWindowController.h"
#include "app/ProgressControllerDelegate.h"
#include "app/ProgressWindowController.h"
#include "crawler/RecordKeepingDelegate.h"
#include "crawler/VacuumCleanerDelegate.h"

#include <QPointer>
#include <QWidget>

#include <memory>

class AuditTabWidget;
class CrawlProgressPublisher;
class DocumentsView;
class DownloaderOperationLibXML;
class LinksView;
class OperationQueue;
class PreviewTabs;
class ProgressView;
class Project;
class ProjectLock;
class QSplitter;
class QWebEngineView;
class SplitView;
class VacuumCleanerOperation;
class WebPreviewPage;

// The controller of the main window: its four panes (progress panel, documents list, links
// list, preview), its sheets, the one-at-a-time queue on which crawls and vacuums run, and
// the project of the last crawl or vacuum started. A running crawl's start, end, error and
// commit calls land here on the main thread; its per-page calls are taken on the crawler's
// thread, as the command line takes them, and what they show reaches the window through a
// publisher that never makes the crawler wait.
class MainViewController : public QWidget,
                           public RecordKeepingDelegate,
                           public VacuumCleanerDelegate,
                           public ProgressControllerDelegate {
    Q_OBJECT
public:
    explicit MainViewController(QWidget* parent = nullptr);
    ~MainViewController() override;

    qint32 pageCount() const;
    qint32 maxDepth() const;
    ProgressView* progressView() const { return progressView_; }
    DocumentsView* documentsView() const { return documentsView_; }
    LinksView* linksView() const { return linksView_; }
    AuditTabWidget* auditTabs() const { return auditTabs_; }
    QWebEngineView* webView() const { return webView_; }
    WebPreviewPage* webPage() const { return webPage_; }
    // The preview's pane: the described preview first, then the page panel and the pictures.
    PreviewTabs* previewTabs() const { return previewTabs_; }
    SplitView* splitView() const { return splitView_; }
    NewProjectWindowController* projectWindowController() const { return projectWindowController_; }
    OpenProjectWindowController* openProjectWindowController() const { return openProjectWindowController_; }
    PagesFilterWindowController* pageFilterWindowController() const { return pageFilterWindowController_; }
    ProgressWindowController* progressWindowController() const { return progressWindowController_; }
    std::shared_ptr<Project> currentProject() const { return currentProject_; }
    OperationQueue* operationsQueue() const { return operationsQueue_.get(); }
    std::shared_ptr<DownloaderOperationLibXML> downloaderOperation() const { return downloaderOperation_; }
    std::shared_ptr<VacuumCleanerOperation> vacuumOperation() const { return vacuumOperation_; }

    // A new sheet of a kind replaces (and releases) the one before it.
    void setProjectWindowController(NewProjectWindowController* controller);
    void setOpenProjectWindowController(OpenProjectWindowController* controller);
    void setPageFilterWindowController(PagesFilterWindowController* controller);

    void populateCurrentProject(const std::shared_ptr<Project>& project);
    void closeCurrentProject();
    // A project deleted from the open-project sheet: closed if the window shows it.
    void projectWasDeleted(const std::shared_ptr<Project>& project);
    void applyFilter(qint32 filter);
    void displayProgressView();
    void startCrawlerForProject(const std::shared_ptr<Project>& project);
    void cancelCrawlerForProject(const std::shared_ptr<Project>& project);
    void stopIndexer() override;
    void startVacuumForProject(const std::shared_ptr<Project>& project);
    void selectPage(const QuillmerePagePtr& page);
    // Selects the page's row in the documents list (a click on the crawl map); a page the
    // filter hides is shown in the page panel and the map only.
    void selectPageInDocumentsList(qint64 idt);
    bool windowShouldClose() const { return true; }
    void windowWillClose();

    // True while a crawl or a vacuum is queued or running.
    bool isBusy() const;
    // Stops a running crawl and lets it (and the vacuum that follows) wind down, keeping the
    // window's events going meanwhile; nothing of the crawl is lost.
    void stopAndWaitForOperations();

    // The divider limits: 100 from the top and from the bottom of the split view.
    double splitViewConstrainMinCoordinate(QSplitter* splitView, double proposed, int dividerIndex) const;
    double splitViewConstrainMaxCoordinate(QSplitter* splitView, double proposed, int dividerIndex) const;

    // DownloaderDelegate (the record keeping comes from RecordKeepingDelegate)
    bool takesCallsOnCrawlerThread() const override { return true; }
    bool takesCommitsOnCrawlerThread() const override { return false; }
    CrawlProgressPublisher* progressPublisher() const { return progressPublisher_; }
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

Q_SIGNALS:
    // After the vacuum that ends every crawl: the window is idle again.
    void crawlFinished();

private:
    void awakeFromNib();
    void queueCrawler();
    void reconcileWithDatabase(const std::shared_ptr<Project>& project);
    bool lockCurrentProject();
    void leaveProjectDeletedElsewhere();
    template <typename T>
    void replaceSheet(QPointer<T>& slot, T* controller);

    ProgressView* progressView_;
    DocumentsView* documentsView_;
    LinksView* linksView_;
    // The tab bar that holds the documents list and the audit's lists.
    AuditTabWidget* auditTabs_;
    QWebEngineView* webView_;
    WebPreviewPage* webPage_;
    PreviewTabs* previewTabs_;
    SplitView* splitView_;
    QPointer<NewProjectWindowController> projectWindowController_;
    QPointer<OpenProjectWindowController> openProjectWindowController_;
    QPointer<PagesFilterWindowController> pageFilterWindowController_;
    QPointer<ProgressWindowController> progressWindowController_;
    std::shared_ptr<Project> currentProject_;
    std::unique_ptr<OperationQueue> operationsQueue_;
    std::shared_ptr<DownloaderOperationLibXML> downloaderOperation_;
    std::shared_ptr<VacuumCleanerOperation> vacuumOperation_;
    // Held from the start of a crawl to the end of the vacuum that follows it.
    std::unique_ptr<ProjectLock> projectLock_;
    bool lockRefusedAsGone_ = false;
    CrawlProgressPublisher* progressPublisher_ = nullptr;
};
