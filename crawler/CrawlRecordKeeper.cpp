#include "crawler/CrawlRecordKeeper.h"

#include "store/ApplicationDelegate.h"
#include "store/CrawlCounters.h"
#include "store/DataModelManager.h"
#include "base/DebugTrace.h"
#include "store/Project.h"
#include "store/RedirectChain.h"
#include "store/WebStore.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmereLink.h"

#include <QDateTime>

#include <sqlite3.h>

CrawlRecordKeeper::CrawlRecordKeeper(std::shared_ptr<Project> project) : project_(std::move(project)) {}

CrawlRecordKeeper::~CrawlRecordKeeper()
{
    // A crawl that never reached its end steps leaves the project reading its own values.
    if (project_ && counters_ && project_->liveCounters() == counters_)
        project_->setLiveCounters(nullptr);
}

namespace {
// The running page count is also kept in the crawl database's header, written inside the
// transaction that holds the page counting it: it is exactly as far as the pages committed, even
// after a crash, where the registry (saved once a second) may lag behind.
constexpr const char* kCommittedCountPragma = "PRAGMA user_version";

void writeCommittedCount(const std::shared_ptr<Project>& project, qint32 count)
{
    if (sqlite3* db = project->sqlite3Database()) {
        const QByteArray sql = QByteArray(kCommittedCountPragma) + " = " + QByteArray::number(qMax(0, count));
        sqlite3_exec(db, sql.constData(), nullptr, nullptr, nullptr);
    }
}

qint32 readCommittedCount(const std::shared_ptr<Project>& project)
{
    qint32 count = 0;
    sqlite3* db = project->sqlite3Database();
    sqlite3_stmt* stmt = nullptr;
    if (db && sqlite3_prepare_v2(db, kCommittedCountPragma, -1, &stmt, nullptr) == SQLITE_OK
        && sqlite3_step(stmt) == SQLITE_ROW)
        count = sqlite3_column_int(stmt, 0);
    sqlite3_finalize(stmt);
    return count;
}
} // namespace

qint32 CrawlRecordKeeper::committedPageCount(const std::shared_ptr<Project>& project)
{
    return readCommittedCount(project);
}

qint32 CrawlRecordKeeper::pageCountOf(const std::shared_ptr<Project>& project)
{
    // After a crash the registry may lag behind the pages committed; the stored count is
    // taken up otherwise, as a crawl always has.
    return qMax(project->pages_count(), readCommittedCount(project));
}

bool CrawlRecordKeeper::reconcileWithDatabase(const std::shared_ptr<Project>& project)
{
    // The end steps save the stop date: an earlier one (or none) after the start date says
    // they never did.
    const QDateTime start = project->crawler_start_date();
    const QDateTime stop = project->crawler_stop_date();
    if (!start.isValid() || (stop.isValid() && stop >= start))
        return false;
    bool changed = false;
    // 0 is also what a database of an earlier version holds: no count to go by.
    const qint32 committed = readCommittedCount(project);
    if (committed > 0 && committed != project->pages_count()) {
        project->setPages_count(committed);
        changed = true;
    }
    if (QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project) == 0) {
        // During the walk the registry holds the depth of the page in hand, not the deepest.
        qint32 deepest = 0;
        sqlite3_stmt* stmt = nullptr;
        sqlite3* db = project->sqlite3Database();
        if (db && sqlite3_prepare_v2(db, "select max(depth) from DownloaderQueue where perform_done = 1", -1, &stmt, nullptr)
                      == SQLITE_OK
            && sqlite3_step(stmt) == SQLITE_ROW)
            deepest = sqlite3_column_int(stmt, 0);
        sqlite3_finalize(stmt);
        if (deepest > project->max_depth()) {
            project->setMax_depth(deepest);
            changed = true;
        }
    }
    return changed;
}

void CrawlRecordKeeper::restartProject(const std::shared_ptr<Project>& project)
{
    // Zeroed before the pages go, so that no empty database is left with the old count.
    writeCommittedCount(project, 0);
    project->truncateSQLiteDatabase();
    RedirectChain::clear(project);
    // A web project starts again from nothing: the headers, targets and links of the crawl
    // it replaces would make its checks and counts wrong.
    WebStore::clear(project->sqlite3Database());
    project->setPages_count(0);
    project->setMax_depth(0);
}

void CrawlRecordKeeper::crawlDidStart()
{
    project_->setCrawler_start_date(QDateTime::currentDateTime());
    // After a crawl killed outright the registry's count may lag behind the pages committed.
    pageCount_ = pageCountOf(project_);
    maxDepth_ = project_->max_depth();
    pagesThisRun_ = 0;
    sinceLastSave_.invalidate();
    if (keepsCountersApart_) {
        counters_ = std::make_shared<CrawlCounters>();
        counters_->pagesCount.store(pageCount());
        counters_->depthInHand.store(maxDepth());
        project_->setLiveCounters(counters_);
    }
}

void CrawlRecordKeeper::publishCounters(qint32 depthInHand)
{
    if (counters_) {
        counters_->pagesCount.store(pageCount(), std::memory_order_relaxed);
        counters_->depthInHand.store(depthInHand, std::memory_order_relaxed);
        return;
    }
    project_->setPages_count(pageCount());
    project_->setMax_depth(depthInHand);
}

void CrawlRecordKeeper::writeCountersToProject()
{
    if (!counters_)
        return;
    project_->setPages_count(counters_->pagesCount.load());
    project_->setMax_depth(counters_->depthInHand.load());
}

void CrawlRecordKeeper::crawlDidCommit()
{
    // Saved just after a commit: every page counted so far is in the crawl database, so the
    // registry never counts pages that a crash could still take back.
    if (!sinceLastSave_.isValid() || sinceLastSave_.elapsed() >= 1000) {
        sinceLastSave_.start();
        writeCountersToProject();
        // No rollback on failure: the counters in memory are what the limits read, and the
        // next save (a second later, or at the end) tries again.
        ApplicationDelegate* delegate = ApplicationDelegate::sharedAppDelegate();
        if (DataModelManager* manager = delegate ? delegate->dataModelManager() : nullptr)
            manager->saveContext(false);
    }
}

void CrawlRecordKeeper::pageDidStart(const QString&, qint32 depth)
{
    maxDepthBeforePage_ = maxDepth();
    pageCount_ += 1;
    pagesThisRun_ += 1;
    if (maxDepth() < depth)
        maxDepth_ = depth;
    // The depth of the page in hand, not the deepest one: the true maximum is written at the end.
    publishCounters(depth);
    writeCommittedCount(project_, pageCount());
}

void CrawlRecordKeeper::pageWasAbandoned()
{
    pageCount_ -= 1;
    pagesThisRun_ -= 1;
    maxDepth_ = maxDepthBeforePage_;
    if (counters_)
        counters_->pagesCount.store(pageCount(), std::memory_order_relaxed);
    else
        project_->setPages_count(pageCount());
    writeCommittedCount(project_, pageCount());
}

void CrawlRecordKeeper::crawlDidEnd(qint64* waitingCount, qint64* doneCount)
{
    if (counters_ && project_->liveCounters() == counters_)
        project_->setLiveCounters(nullptr);
    counters_.reset();
    QuillmerePage::performWeightForProject(project_);
    project_->setCrawler_stop_date(QDateTime::currentDateTime());
    project_->setPages_count(pageCount());
    project_->setMax_depth(maxDepth());
    const qint64 waiting = QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project_);
    const qint64 done = QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project_);
    if (waitingCount)
        *waitingCount = waiting;
    if (doneCount)
        *doneCount = done;
    DebugTrace("downloaderDidEnd::max_depth %d", maxDepth());
    if (ApplicationDelegate* delegate = ApplicationDelegate::sharedAppDelegate())
        delegate->saveContext();
}

QuillmerePagePtr CrawlRecordKeeper::foundPageWithPath(const QString& path, const QString& name, const QString& title,
                                                      const QString& url, qint32 depth)
{
    QuillmerePagePtr page = QuillmerePage::getPageFromURL(url, project_);
    if (!page)
        page = QuillmerePage::createPageWithPath(path, name, title, url, depth, project_);
    return page;
}

void CrawlRecordKeeper::updatePage(const QuillmerePagePtr& page, const QString& title)
{
    if (page)
        page->updatePageTitle(title);
}

bool CrawlRecordKeeper::foundLinkWithPath(const QString& path, const QString& name, const QString& anchor,
                                          const QString& url, qint32 depth, const QuillmerePagePtr& page)
{
    QuillmerePagePtr target = QuillmerePage::getPageFromURL(url, project_);
    if (!target)
        target = QuillmerePage::createPageWithPath(path, name, QStringLiteral(""), url, depth, project_);
    if (!target)
        return false;
    return foundLinkWithPage(target, anchor, page);
}

bool CrawlRecordKeeper::foundLinkWithPage(const QuillmerePagePtr& pageTo, const QString& anchor,
                                          const QuillmerePagePtr& page)
{
    if (!pageTo || !page)
        return false;
    page->incOutLinkCount();
    pageTo->incInLinkCount();
    // The counter is the source page's incoming count, read after the increments.
    const qint32 counter = qint32(page->inLinkCount());
    return QuillmereLink::createLinkWithPageSource(page, pageTo, anchor, counter, project_) != nullptr;
}

QuillmerePagePtr CrawlRecordKeeper::getPageFromURL(const QString& url)
{
    return QuillmerePage::getPageFromURL(url, project_);
}
