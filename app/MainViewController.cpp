#include "app/MainViewController.h"

#include "app/Alert.h"
#include "app/AppDelegate.h"
#include "app/AuditTabWidget.h"
#include "app/CrawlProgressPublisher.h"
#include "app/DocumentsView.h"
#include "app/LinksView.h"
#include "app/MainWindow.h"
#include "app/NewProjectWindowController.h"
#include "app/OpenProjectWindowController.h"
#include "app/PagesFilterWindowController.h"
#include "app/PreviewTabs.h"
#include "app/ProgressView.h"
#include "app/ProgressWindowController.h"
#include "app/ProjectRefusalAlert.h"
#include "app/SplitView.h"
#include "app/WebPreviewPage.h"
#include "crawler/CrawlAndVacuum.h"
#include "crawler/CrawlOperationFactory.h"
#include "crawler/CrawlRecordKeeper.h"
#include "crawler/CrawlSettings.h"
#include "crawler/CrawlStartDecision.h"
#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/OperationQueue.h"
#include "crawler/VacuumCleanerOperation.h"
#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/PageFilter.h"
#include "store/Project.h"
#include "store/DataModelManager.h"
#include "store/ProjectCatalog.h"
#include "store/ProjectLock.h"
#include "store/StringTable.h"

#include <QEventLoop>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>
#include <QWebEngineView>

using Localization::localizedString;

MainViewController::MainViewController(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("MainViewController"));
    progressView_ = new ProgressView;
    progressView_->setMainViewController(this);
    documentsView_ = new DocumentsView;
    documentsView_->setMainViewController(this);
    auditTabs_ = new AuditTabWidget(documentsView_);
    auditTabs_->setFilterHandler([this](qint32 filter) { applyFilter(filter); });
    linksView_ = new LinksView;
    linksView_->setMainViewController(this);
    webView_ = new QWebEngineView;
    webView_->setObjectName(QStringLiteral("webView"));
    webPage_ = new WebPreviewPage(webView_);
    previewTabs_ = new PreviewTabs(webView_);
    connect(previewTabs_, &PreviewTabs::pageChosen, this, &MainViewController::selectPageInDocumentsList);

    splitView_ = new SplitView;
    splitView_->setObjectName(QStringLiteral("splitView"));
    splitView_->addWidget(progressView_);
    splitView_->addWidget(auditTabs_);
    splitView_->addWidget(linksView_);
    splitView_->addWidget(previewTabs_);
    // The first and last panes keep the outer dividers 100 from either end.
    progressView_->setMinimumHeight(100);
    previewTabs_->setMinimumHeight(100);
    documentsView_->setMinimumHeight(90);
    linksView_->setMinimumHeight(90);
    splitView_->setStretchFactor(0, 0);
    splitView_->setStretchFactor(1, 5);
    splitView_->setStretchFactor(2, 3);
    splitView_->setStretchFactor(3, 1);
    splitView_->setSizes({110, 320, 200, 170});
    splitView_->setConstraints(
        [this](QSplitter* view, double proposed, int index) { return splitViewConstrainMinCoordinate(view, proposed, index); },
        [this](QSplitter* view, double proposed, int index) { return splitViewConstrainMaxCoordinate(view, proposed, index); });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(splitView_);
    progressPublisher_ = new CrawlProgressPublisher(
        [this](const CrawlProgressPublisher::State& state) {
            if (state.hasPage) {
                progressView_->updatePageCount(state.pageCount);
                progressView_->downloadPageInProgressWithURL(state.url, state.depth);
            }
            if (!progressWindowController_)
                return;
            if (state.hasPage) {
                progressWindowController_->updatePageCount(state.pageCount);
                progressWindowController_->downloadPageInProgressWithURL(state.url, state.depth);
            }
            if (state.hasLinks)
                progressWindowController_->updateProgressIndicatorWithValue(state.linkValue, state.linkMax);
            if (state.hasQueue)
                progressWindowController_->updateQueueWaiting(state.waiting, state.done);
        },
        this);
    awakeFromNib();
}

MainViewController::~MainViewController()
{
    // The queue's thread may be waiting on one of this controller's relays: stop the crawl
    // and let it end before the queue is joined.
    stopAndWaitForOperations();
    operationsQueue_.reset();
}

void MainViewController::awakeFromNib()
{
    operationsQueue_ = std::make_unique<OperationQueue>();
    operationsQueue_->setMaxConcurrentOperationCount(1);
    webPage_->load(WebPreviewPage::promotionalPageURL());
    webView_->setPage(webPage_);
}

qint32 MainViewController::pageCount() const
{
    return hasRecords() ? records().pageCount() : 0;
}

qint32 MainViewController::maxDepth() const
{
    return hasRecords() ? records().maxDepth() : 0;
}

template <typename T>
void MainViewController::replaceSheet(QPointer<T>& slot, T* controller)
{
    if (slot && slot != controller)
        slot->deleteLater();
    slot = controller;
}

void MainViewController::setProjectWindowController(NewProjectWindowController* controller)
{
    replaceSheet(projectWindowController_, controller);
}

void MainViewController::setOpenProjectWindowController(OpenProjectWindowController* controller)
{
    replaceSheet(openProjectWindowController_, controller);
}

void MainViewController::setPageFilterWindowController(PagesFilterWindowController* controller)
{
    replaceSheet(pageFilterWindowController_, controller);
}

void MainViewController::populateCurrentProject(const std::shared_ptr<Project>& project)
{
    reconcileWithDatabase(project);
    progressView_->setCurrentProject(project);
    documentsView_->setCurrentProject(project);
    linksView_->setCurrentProject(project);
    previewTabs_->setCurrentProject(project);
    documentsView_->refreshTableViewWithFilter(PageFilter::All);
    linksView_->refreshTableView();
    auditTabs_->setCurrentProject(project);
}

void MainViewController::closeCurrentProject()
{
    if (currentProject_)
        currentProject_->closeSQLiteDatabase();
    progressView_->closeCurrentProject();
    documentsView_->closeCurrentProject();
    linksView_->closeCurrentProject();
    auditTabs_->closeCurrentProject();
    previewTabs_->setCurrentProject(nullptr);
}

void MainViewController::applyFilter(qint32 filter)
{
    documentsView_->refreshTableViewWithFilter(filter);
    linksView_->refreshTableView();
}

void MainViewController::displayProgressView()
{
    auto* sheet = ProgressWindowController::initWithDelegate(this, currentProject_);
    replaceSheet(progressWindowController_, sheet);
    AppDelegate* app = AppDelegate::sharedAppDelegate();
    sheet->displaySheetInWindow(app ? static_cast<QWidget*>(app->window()) : window());
}

void MainViewController::queueCrawler()
{
    setProject(currentProject_);
    // The per-page calls come on the crawler's thread: the project's counters are written
    // on this one only.
    keeper().setKeepsCountersApart(true);
    // The queue holds the controller only while it runs; the window outlives every
    // operation (see stopAndWaitForOperations).
    std::shared_ptr<DownloaderDelegate> delegate(std::shared_ptr<void>(), static_cast<DownloaderDelegate*>(this));
    std::shared_ptr<VacuumCleanerDelegate> cleaner(std::shared_ptr<void>(), static_cast<VacuumCleanerDelegate*>(this));
    downloaderOperation_ = CrawlOperationFactory::operationForProject(currentProject_, delegate);
    // The window has no options of its own: the command line's defaults, the bound on a
    // whole transfer among them.
    CrawlSettings().applyTo(*downloaderOperation_);
    CrawlAndVacuum::start(
        operationsQueue_.get(), downloaderOperation_, currentProject_, cleaner,
        [this](const std::shared_ptr<VacuumCleanerOperation>& vacuum) { vacuumOperation_ = vacuum; }, {});
}

void MainViewController::startCrawlerForProject(const std::shared_ptr<Project>& project)
{
    using CrawlStartDecision::Choice;
    using CrawlStartDecision::Situation;
    currentProject_ = project;
    if (!currentProject_)
        return;
    if (!lockCurrentProject()) {
        // The end of the run counts the pages of the project shown: one deleted elsewhere
        // is taken off first, or that count would make its database again.
        if (lockRefusedAsGone_)
            progressView_->setCurrentProject(nullptr);
        progressView_->actionStop();
        leaveProjectDeletedElsewhere();
        return;
    }
    const Situation situation = CrawlStartDecision::situationForProject(currentProject_);
    Choice choice = Choice::Start;
    if (situation == Situation::Finished) {
        Alert alert;
        alert.setMessageText(localizedString("MainViewAlertStartRestartMessageText"));
        alert.setInformativeText(QString());
        alert.addButtonWithTitle(localizedString("MainViewAlertStartRestartDefaultButton"));
        alert.addButtonWithTitle(localizedString("MainViewAlertStartRestartAlternateButton"));
        alert.setCancelButton(1);
        choice = CrawlStartDecision::choiceForAlertAnswer(situation, alert.runModal(window()));
    } else if (situation == Situation::Interrupted) {
        Alert alert;
        alert.setMessageText(localizedString("MainViewAlertStartContinueMessageText"));
        alert.setInformativeText(QString());
        alert.addButtonWithTitle(localizedString("MainViewAlertStartContinueOtherButton"));
        alert.addButtonWithTitle(localizedString("MainViewAlertStartContinueAlternateButton"));
        alert.addButtonWithTitle(localizedString("MainViewAlertStartContinueDefaultButton"));
        alert.setCancelButton(0);
        choice = CrawlStartDecision::choiceForAlertAnswer(situation, alert.runModal(window()));
    }
    if (!CrawlStartDecision::apply(choice, currentProject_)) {
        projectLock_.reset();
        progressView_->actionStop();
        return;
    }
    // Restarting an interrupted crawl empties the list at once; restarting a finished one
    // leaves it until the crawl ends.
    if (choice == Choice::Restart && situation == Situation::Interrupted)
        documentsView_->refreshTableViewWithFilter(PageFilter::All);
    queueCrawler();
    displayProgressView();
}

// A crawl killed in its end steps left the registry's count and depth behind its crawl
// database: put them right as the project is shown, unless another program is crawling it now
// (its own saves will).
void MainViewController::reconcileWithDatabase(const std::shared_ptr<Project>& project)
{
    if (!project)
        return;
    AppDelegate* app = AppDelegate::sharedAppDelegate();
    DataModelManager* manager = app ? app->dataModelManager() : nullptr;
    if (!manager)
        return;
    ProjectCatalog catalog(*manager, StringTable::forLanguage(StringTable::Language::French));
    const ProjectCatalog::Result held = catalog.lock(*project, QStringLiteral("quillmere-gui"));
    if (held.done() && CrawlRecordKeeper::reconcileWithDatabase(project))
        manager->saveContext();
}

// A command-line crawl, vacuum or delete of the same project, or another window, takes the
// same lock: the second one is refused, with the process that holds it.
bool MainViewController::lockCurrentProject()
{
    const QString path = ProjectLock::lockFilePathForDatabase(currentProject_->full_sqlite_name());
    if (projectLock_ && projectLock_->isLocked() && projectLock_->path() == path)
        return true;
    projectLock_.reset();
    AppDelegate* app = AppDelegate::sharedAppDelegate();
    DataModelManager* manager = app ? app->dataModelManager() : nullptr;
    if (!manager)
        return false;
    ProjectCatalog catalog(*manager, StringTable::forLanguage(StringTable::Language::French));
    ProjectCatalog::Result locked = catalog.lock(*currentProject_, QStringLiteral("quillmere-gui"));
    if (locked.done()) {
        projectLock_ = std::move(locked.lock);
        return true;
    }
    ProjectRefusalAlert::show(locked, window());
    lockRefusedAsGone_ = locked.outcome == ProjectCatalog::Outcome::Gone;
    return false;
}

void MainViewController::leaveProjectDeletedElsewhere()
{
    // Deleted by another program while shown here: nothing of it may be crawled any more.
    if (lockRefusedAsGone_)
        projectWasDeleted(currentProject_);
    lockRefusedAsGone_ = false;
}

void MainViewController::projectWasDeleted(const std::shared_ptr<Project>& project)
{
    if (!project)
        return;
    const auto shown = documentsView_->currentProject();
    const bool isShown = shown && (shown == project || shown->name() == project->name());
    const bool isCurrent = currentProject_ && (currentProject_ == project || currentProject_->name() == project->name());
    if (!isShown && !isCurrent)
        return;
    // Its files are gone: nothing may be shown, crawled or written into them any more.
    if (isShown && !isCurrent)
        shown->closeSQLiteDatabase();
    closeCurrentProject();
    currentProject_.reset();
    progressView_->setCurrentProject(nullptr);
    documentsView_->setCurrentProject(nullptr);
    linksView_->setCurrentProject(nullptr);
    previewTabs_->setCurrentProject(nullptr);
}

void MainViewController::cancelCrawlerForProject(const std::shared_ptr<Project>&)
{
    if (downloaderOperation_)
        downloaderOperation_->setCanContinue(false);
}

void MainViewController::stopIndexer()
{
    cancelCrawlerForProject(currentProject_);
}

void MainViewController::startVacuumForProject(const std::shared_ptr<Project>& project)
{
    currentProject_ = project;
    if (currentProject_ && !lockCurrentProject()) {
        vacuumCleanerDidEnd();
        leaveProjectDeletedElsewhere();
        return;
    }
    std::shared_ptr<VacuumCleanerDelegate> delegate(std::shared_ptr<void>(), static_cast<VacuumCleanerDelegate*>(this));
    vacuumOperation_ = VacuumCleanerOperation::initWithProject(project, delegate);
    operationsQueue_->addOperation(vacuumOperation_);
}

void MainViewController::selectPage(const QuillmerePagePtr& page)
{
    linksView_->selectPage(page);
    previewTabs_->selectPage(page);
}

void MainViewController::selectPageInDocumentsList(qint64 idt)
{
    const QList<QuillmerePagePtr>& pages = documentsView_->arrayOfPages();
    for (int row = 0; row < pages.size(); ++row) {
        if (pages.at(row)->idt() != idt)
            continue;
        QTableView* table = documentsView_->documentsTableView();
        table->selectRow(row);
        table->scrollTo(table->model()->index(row, 0));
        return;
    }
    if (const QuillmerePagePtr page = QuillmerePage::getPageFromIdentifier(idt, documentsView_->currentProject()))
        selectPage(page);
}

void MainViewController::windowWillClose()
{
    if (AppDelegate* app = AppDelegate::sharedAppDelegate())
        app->quit();
}

bool MainViewController::isBusy() const
{
    return (operationsQueue_ && operationsQueue_->operationCount() > 0) || documentsView_->isLoading();
}

void MainViewController::stopAndWaitForOperations()
{
    if (!isBusy())
        return;
    // Kept even when asked before the crawl's run has begun.
    stopIndexer();
    // The crawl winds down through its relays, then the vacuum runs: both need this thread.
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (!isBusy())
            loop.quit();
    });
    poll.start(5);
    loop.exec();
}

double MainViewController::splitViewConstrainMinCoordinate(QSplitter*, double, int) const
{
    return 100.0;
}

double MainViewController::splitViewConstrainMaxCoordinate(QSplitter* splitView, double, int) const
{
    return (splitView ? splitView->height() : 0.0) - 100.0;
}

void MainViewController::downloaderDidStart()
{
    DebugTrace("downloaderDidStart");
    keeper().crawlDidStart();
    progressView_->updateStartDate(currentProject_->crawler_start_date());
}

// The per-page calls below run on the crawler's thread: they touch no widget and no
// registry value, only the keeper and the publisher.
void MainViewController::downloadPageDidStartWithURL(const QString& url, qint32 depth)
{
    DebugTrace("  downloadPageDidStartWithURL:(%s) andDepth:(%d)", qPrintable(url), depth);
    keeper().pageDidStart(url, depth);
    progressPublisher_->page(pageCount(), url, depth);
}

void MainViewController::downloadPageDidEndWithURL(const QString& url, qint32 depth)
{
    DebugTrace("  downloadPageDidEndWithURL:(%s) andDepth:(%d)", qPrintable(url), depth);
}

void MainViewController::initLinkProgressWithMaxValue(qint32 linkCountMax)
{
    progressPublisher_->links(0, linkCountMax);
}

void MainViewController::setLinkProgressWithValue(qint32 value, qint32 maxValue)
{
    progressPublisher_->links(value, maxValue);
}

void MainViewController::setWaitingQueueCount(qint32 waitingCount, qint32 doneCount)
{
    progressPublisher_->queue(waitingCount, doneCount);
}

void MainViewController::downloaderEndWithError(const QString& error)
{
    Alert alert;
    alert.setMessageText(error);
    alert.setInformativeText(QString());
    alert.addButtonWithTitle(localizedString("MainViewAlertDownloadErrorDefaultButton"));
    alert.runModal(window());
}

void MainViewController::downloaderDidEnd()
{
    DebugTrace("downloaderDidEnd");
    // The last progress the crawler published is shown before the end steps write theirs.
    progressPublisher_->flush();
    qint64 waiting = 0;
    qint64 done = 0;
    // Weights, stop date, final counters, the queue's counts and the registry saved.
    keeper().crawlDidEnd(&waiting, &done);
    if (progressWindowController_)
        progressWindowController_->updateQueueWaiting(qint32(waiting), qint32(done));
    progressView_->updateStopDate(currentProject_->crawler_stop_date());
    progressView_->crawlerDidEnd();
    // Read off this thread: at twenty thousand pages the list alone would stop the window
    // for longer than a frame or two.
    documentsView_->refreshTableViewWithFilterInBackground(PageFilter::All);
    auditTabs_->refresh();
    // Every crawl, finished or stopped, is followed by the vacuum (queued with it); the sheet
    // stays up.
    progressView_->actionCompresser();
}

void MainViewController::vacuumCleanerDidStart() {}

void MainViewController::vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex)
{
    if (progressWindowController_)
        progressWindowController_->updateProgressIndicatorWithValue(currentIndex, maxIndex);
}

void MainViewController::vacuumingPage(const QuillmerePagePtr& page)
{
    if (progressWindowController_ && page)
        progressWindowController_->vacuumPageInProgressWithURL(page->url());
}

void MainViewController::vacuumCleanerDidEnd()
{
    projectLock_.reset();
    progressView_->crawlerDidEnd();
    auditTabs_->refresh();
    previewTabs_->projectChanged();
    if (progressWindowController_)
        progressWindowController_->hideProgressWindow();
    // The crawl counts as finished once the list shows its pages.
    documentsView_->refreshTableViewWithFilterInBackground(PageFilter::All, [this] { Q_EMIT crawlFinished(); });
}
