#include "store/QuillmereDownloaderQueue.h"

#include "base/DebugTrace.h"
#include "store/PageRowCache.h"
#include "store/RecordStatement.h"

using namespace RecordStatement;

namespace {

const char* const kCreateEntry =
    "insert into DownloaderQueue(url,path,document_name,depth,perform_done) values(?,?,?,?,0)";
const char* const kGetAllWaiting =
    "select idt,url,path,document_name,depth,perform_done from DownloaderQueue where perform_done=0 order by idt "
    "limit 100";
const char* const kCountWaiting = "select count(idt) from DownloaderQueue where perform_done=0";
const char* const kCountDone = "select count(idt) from DownloaderQueue where perform_done=1";
const char* const kIsInQueue = "select idt from DownloaderQueue where url=?";
const char* const kCountWithURL = "select count(idt) from DownloaderQueue where url=?";
const char* const kMarkDone = "update DownloaderQueue set perform_done=1 where idt=?";
const char* const kMarkWaiting = "update DownloaderQueue set perform_done=0 where idt=?";


} // namespace

QuillmereDownloaderQueue::QuillmereDownloaderQueue(qint64 idt, const QString& url, const QString& path,
                                                   const QString& documentName, qint64 depth, bool performDone,
                                                   const std::shared_ptr<Project>& project)
    : idt_(idt)
    , url_(url)
    , path_(path)
    , documentName_(documentName)
    , depth_(depth)
    , performDone_(performDone)
    , project_(project)
{
}

QuillmereDownloaderQueuePtr QuillmereDownloaderQueue::createDownloaderQueueWithURL(const QString& url,
                                                                                  const QString& path,
                                                                                  const QString& documentName,
                                                                                  qint32 depth,
                                                                                  const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCreateEntry, &stmt)) {
        DebugTrace("createDownloaderQueueWithURL Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindText(stmt, 1, url);
    bindText(stmt, 2, path);
    bindText(stmt, 3, documentName);
    bindInt(stmt, 4, depth);
    QuillmereDownloaderQueuePtr entry;
    if (step(stmt, project) == SQLITE_DONE) {
        entry = std::make_shared<QuillmereDownloaderQueue>(sqlite3_last_insert_rowid(db), url, path, documentName,
                                                           depth, false, project);
        PageRowCache::rememberQueued(db, url, true);
    } else {
        PageRowCache::clear(db);
    }
    finish(stmt);
    return entry;
}

QList<QuillmereDownloaderQueuePtr> QuillmereDownloaderQueue::getAllWaitingDownloaderQueueForProject(
    const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetAllWaiting, &stmt)) {
        DebugTrace("getAllWaitingDownloaderQueueForProject Error::%s", sqlite3_errmsg(db));
        return {};
    }
    QList<QuillmereDownloaderQueuePtr> entries;
    while (nextRow(stmt, project))
        entries.append(downloaderQueueFromStatement(stmt, project));
    finish(stmt);
    return entries;
}

qint64 QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCountWaiting, &stmt)) {
        DebugTrace("countWaitingDownloaderQueueForProject Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    return countValue(stmt, project);
}

qint64 QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCountDone, &stmt)) {
        // Same text as the waiting count: the logs have always shown it so.
        DebugTrace("countWaitingDownloaderQueueForProject Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    return countValue(stmt, project);
}

qint64 QuillmereDownloaderQueue::countDownloaderQueueWithURL(const QString& url, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCountWithURL, &stmt)) {
        DebugTrace("countDownloaderQueueWithURL Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    bindText(stmt, 1, url);
    return countValue(stmt, project);
}

bool QuillmereDownloaderQueue::pageURLIsAlreadyInQueue(const QString& url, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    // Asked for every link during a crawl: an answer kept in memory needs no statement.
    const std::optional<bool> kept = PageRowCache::findQueued(db, url);
    if (kept && !PageRowCache::isChecking())
        return *kept;
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kIsInQueue, &stmt)) {
        DebugTrace("pageURLIsAlreadyInQueue Error::%s", sqlite3_errmsg(db));
        return false;
    }
    bindText(stmt, 1, url);
    bool found = false;
    const int rc = step(stmt, project);
    if (rc != SQLITE_DONE)
        found = columnInt(stmt, 0) > 0;
    finish(stmt);
    if (kept) {
        PageRowCache::noteChecked(*kept == found, url, "queue entry");
        return *kept;
    }
    if (rc == SQLITE_ROW || rc == SQLITE_DONE)
        PageRowCache::rememberQueued(db, url, found);
    return found;
}

QuillmereDownloaderQueuePtr QuillmereDownloaderQueue::downloaderQueueFromStatement(sqlite3_stmt* statement,
                                                                                  const ProjectPtr& project)
{
    return std::make_shared<QuillmereDownloaderQueue>(columnInt(statement, 0), columnText(statement, 1),
                                                      columnText(statement, 2), columnText(statement, 3),
                                                      columnInt(statement, 4), columnInt(statement, 5) == 1,
                                                      project);
}

void QuillmereDownloaderQueue::updatePerformDoneWithBooleanValue(bool value)
{
    const ProjectPtr owner = project_.lock();
    sqlite3* db = databaseOf(owner);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, value ? kMarkDone : kMarkWaiting, &stmt)) {
        DebugTrace("updatePerformDoneWithBooleanValue Error::%s", sqlite3_errmsg(db));
        return;
    }
    bindInt(stmt, 1, idt_);
    step(stmt, owner);
    finish(stmt);
}

QString QuillmereDownloaderQueue::description() const
{
    return QStringLiteral("QuillmereDownloaderQueue (idt::") + QString::number(idt_) + QStringLiteral(") (url::") +
           describe(url_) + QStringLiteral(") (path::") + describe(path_) + QStringLiteral(") (documentName::") +
           describe(documentName_) + QStringLiteral(") (depth::") + QString::number(depth_) +
           QStringLiteral(") (performDone::") + QString::number(performDone_ ? 1 : 0) + QStringLiteral(")");
}
