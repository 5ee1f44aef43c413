#include "store/Project.h"

#include "store/ApplicationDelegate.h"
#include "store/BufferedFileLogger.h"
#include "store/CrawlCounters.h"
#include "store/DataModelManager.h"
#include "store/DateFormatter.h"
#include "base/DebugTrace.h"
#include "store/DisplayText.h"
#include "store/ManagedObjectContext.h"
#include "store/ProjectFilePaths.h"
#include "store/ReadOnlyDatabase.h"
#include "store/SQLite3Wrapper.h"
#include "store/StatementCache.h"

#include <sqlite3.h>

namespace {
ApplicationDelegate* appDelegate()
{
    return ApplicationDelegate::sharedAppDelegate();
}

DataModelManager* manager()
{
    ApplicationDelegate* delegate = appDelegate();
    return delegate ? delegate->dataModelManager() : nullptr;
}

ManagedObjectContext* context()
{
    ApplicationDelegate* delegate = appDelegate();
    return delegate ? delegate->managedObjectContext() : nullptr;
}

void saveThroughDelegate()
{
    if (ApplicationDelegate* delegate = appDelegate())
        delegate->saveContext();
}

QList<ProjectPtr> fetch(std::function<bool(const Project&)> predicate, int limit, bool sortByCreation)
{
    ManagedObjectContext* ctx = context();
    if (!ctx)
        return {};
    FetchRequest request;
    request.predicate = std::move(predicate);
    request.fetchLimit = limit;
    if (sortByCreation)
        request.sortKey = QStringLiteral("creation_date");
    AppError error;
    auto result = ctx->executeFetchRequest(request, &error);
    return result ? *result : QList<ProjectPtr>();
}

void deleteProjectFiles(Project& project)
{
    DataModelManager* m = manager();
    if (!m)
        return;
    // A damaged row may name files outside the data directory (or the directory itself):
    // then none of its files is removed.
    const QString escaping = ProjectFilePaths::escapingPath(*m, project);
    if (!escaping.isNull()) {
        DebugTrace("deleteProjectFiles refused: %s lies outside its place", qPrintable(escaping));
        return;
    }
    m->deleteLogFileNameWithProjectName(project.name());
    m->deleteLogErrorsFileNameWithProjectName(project.name());
    m->deleteHtmlLocalFilesWithProjectName(project.name());
    project.deleteSQLiteDatabase();
}

const QString kName = QStringLiteral("name");
const QString kUrl = QStringLiteral("url");
} // namespace

Project::~Project()
{
    // Nobody can reach this project's database any more: give its connection back. The
    // manager may be going away too, so the handle is closed here directly.
    if (database_ && database_->database()) {
        StatementCache::release(database_->database());
        sqlite3_close(database_->database());
        database_->setDatabase(nullptr);
    }
}

ProjectPtr Project::createProjectWithName(const QString& name, const QString& url, qint32 limitDepth,
                                          qint32 limitPageCount)
{
    ManagedObjectContext* ctx = context();
    if (!ctx)
        return nullptr;
    ProjectPtr project = ctx->insertNewProject();
    project->setName(name);
    project->setUrl(url);
    project->setCreation_date(QDateTime::currentDateTime());
    project->setCrawler_start_date(QDateTime());
    project->setCrawler_stop_date(QDateTime());
    project->setLimit_depth(limitDepth);
    project->setLimit_page_count(limitPageCount);
    project->setSqlite_name(name + QStringLiteral(".sqlite"));
    project->setExplore_no_index(true);
    project->openSQLiteDatabase();
    return project;
}

QList<ProjectPtr> Project::getAllProjects()
{
    return fetch({}, 0, true);
}

ProjectPtr Project::getProjectWithName(const QString& name)
{
    auto found = fetch([&](const Project& p) { return p.valueForKey(kName).toString() == name; }, 1, false);
    return found.isEmpty() ? nullptr : found.first();
}

ProjectPtr Project::getProjectWithURL(const QString& url)
{
    auto found = fetch([&](const Project& p) { return p.valueForKey(kUrl).toString() == url; }, 1, false);
    return found.isEmpty() ? nullptr : found.first();
}

qint64 Project::countProjects()
{
    ManagedObjectContext* ctx = context();
    if (!ctx)
        return 0;
    AppError error;
    const qint64 count = ctx->countForFetchRequest(FetchRequest{}, &error);
    return count == ManagedObjectContext::NotFound ? 0 : count;
}

void Project::deleteProjectWithName(const QString& name)
{
    if (ProjectPtr project = getProjectWithName(name)) {
        deleteProjectFiles(*project);
        if (ManagedObjectContext* ctx = context())
            ctx->deleteObject(project);
    }
    saveThroughDelegate();
}

void Project::deleteAllProjects()
{
    for (const ProjectPtr& project : getAllProjects()) {
        deleteProjectFiles(*project);
        if (ManagedObjectContext* ctx = context())
            ctx->deleteObject(project);
    }
    saveThroughDelegate();
}

// --- attributes ---

qint32 Project::intAttribute(const char* key) const
{
    return qint32(valueForKey(QString::fromLatin1(key)).toLongLong());
}

QString Project::name() const { return valueForKey(kName).toString(); }
void Project::setName(const QString& v) { setValueForKey(kName, v.isNull() ? QVariant() : QVariant(v)); }
QString Project::url() const { return valueForKey(kUrl).toString(); }
void Project::setUrl(const QString& v) { setValueForKey(kUrl, v.isNull() ? QVariant() : QVariant(v)); }
QDateTime Project::creation_date() const { return valueForKey(QStringLiteral("creation_date")).toDateTime(); }
void Project::setCreation_date(const QDateTime& v)
{
    setValueForKey(QStringLiteral("creation_date"), v.isValid() ? QVariant(v) : QVariant());
}
QDateTime Project::crawler_start_date() const { return valueForKey(QStringLiteral("crawler_start_date")).toDateTime(); }
void Project::setCrawler_start_date(const QDateTime& v)
{
    setValueForKey(QStringLiteral("crawler_start_date"), v.isValid() ? QVariant(v) : QVariant());
}
QDateTime Project::crawler_stop_date() const { return valueForKey(QStringLiteral("crawler_stop_date")).toDateTime(); }
void Project::setCrawler_stop_date(const QDateTime& v)
{
    setValueForKey(QStringLiteral("crawler_stop_date"), v.isValid() ? QVariant(v) : QVariant());
}
qint32 Project::limit_depth() const { return intAttribute("limit_depth"); }
void Project::setLimit_depth(qint32 v) { setValueForKey(QStringLiteral("limit_depth"), qlonglong(v)); }
qint32 Project::limit_page_count() const { return intAttribute("limit_page_count"); }
void Project::setLimit_page_count(qint32 v) { setValueForKey(QStringLiteral("limit_page_count"), qlonglong(v)); }
qint32 Project::max_depth() const
{
    return liveCounters_ ? liveCounters_->depthInHand.load(std::memory_order_relaxed) : intAttribute("max_depth");
}
void Project::setMax_depth(qint32 v) { setValueForKey(QStringLiteral("max_depth"), qlonglong(v)); }
qint32 Project::pages_count() const
{
    return liveCounters_ ? liveCounters_->pagesCount.load(std::memory_order_relaxed) : intAttribute("pages_count");
}
void Project::setPages_count(qint32 v) { setValueForKey(QStringLiteral("pages_count"), qlonglong(v)); }
QString Project::sqlite_name() const { return valueForKey(QStringLiteral("sqlite_name")).toString(); }
void Project::setSqlite_name(const QString& v)
{
    setValueForKey(QStringLiteral("sqlite_name"), v.isNull() ? QVariant() : QVariant(v));
}
bool Project::explore_no_index() const { return valueForKey(QStringLiteral("explore_no_index")).toBool(); }
void Project::setExplore_no_index(bool v) { setValueForKey(QStringLiteral("explore_no_index"), v); }
bool Project::explore_no_follow() const { return valueForKey(QStringLiteral("explore_no_follow")).toBool(); }
void Project::setExplore_no_follow(bool v) { setValueForKey(QStringLiteral("explore_no_follow"), v); }
bool Project::explore_ariane() const { return valueForKey(QStringLiteral("explore_ariane")).toBool(); }
void Project::setExplore_ariane(bool v) { setValueForKey(QStringLiteral("explore_ariane"), v); }
bool Project::explore_sitewides() const { return valueForKey(QStringLiteral("explore_sitewides")).toBool(); }
void Project::setExplore_sitewides(bool v) { setValueForKey(QStringLiteral("explore_sitewides"), v); }

// --- derived ---

bool Project::isLimitDepthExpected() const
{
    if (limit_depth() == -1)
        return false;
    return max_depth() > limit_depth();
}

bool Project::isLimitPageCountExpected() const
{
    if (limit_page_count() == -1)
        return false;
    return pages_count() > limit_page_count();
}

QString Project::description() const
{
    const QVariant depth = valueForKey(QStringLiteral("limit_depth"));
    const QVariant pages = valueForKey(QStringLiteral("limit_page_count"));
    const QString depthText = depth.isNull() ? QStringLiteral("(null)") : QString::number(depth.toLongLong());
    const QString pagesText = pages.isNull() ? QStringLiteral("(null)") : QString::number(pages.toLongLong());
    const QString creation = creation_date().isValid() ? DateFormatter::stringFromDate(creation_date()) : QStringLiteral("(null)");
    if (crawler_start_date().isValid()) {
        return QStringLiteral("name(%1) url(%2) creationDate(%3) crawlerStartDate(%4) limitDepth(%5) limitPageCount(%6)")
            .arg(name(), url(), creation, DateFormatter::stringFromDate(crawler_start_date()), depthText, pagesText);
    }
    return QStringLiteral("name(%1) url(%2) creationDate(%3) limitDepth(%4) limitPageCount(%5)")
        .arg(name(), url(), creation, depthText, pagesText);
}

QString Project::full_sqlite_name() const
{
    DataModelManager* m = manager();
    const QString full = m ? m->fullSQLite3FileNameWithProjectName(sqlite_name()) : QString();
    DebugTrace("sqlite_name(%s) full_sqlite_name(%s)", qPrintable(sqlite_name()), qPrintable(full));
    return full;
}

// --- crawl database ---

sqlite3* Project::sqlite3Database()
{
    if (!database_ && !openSQLiteDatabase())
        return nullptr;
    return database_->database();
}

bool Project::openSQLiteDatabase()
{
    DataModelManager* m = manager();
    // A row naming files outside the data directory gets no database: nothing is made,
    // opened or switched to WAL mode there.
    const QString escaping = m ? ProjectFilePaths::escapingPath(*m, *this) : QString();
    if (!escaping.isNull())
        DebugTrace("openSQLiteDatabase refused: %s lies outside its place", qPrintable(escaping));
    sqlite3* handle = m && escaping.isNull() ? m->openOrCreateSQLite3DatabaseWithName(full_sqlite_name()) : nullptr;
    // The wrapper is kept even around a null handle: a failed open is not retried until
    // the database is closed.
    database_ = std::make_shared<SQLite3Wrapper>(handle);
    return database_ != nullptr;
}

bool Project::openSQLiteDatabaseForReading()
{
    closeSQLiteDatabase();
    sqlite3* handle = ReadOnlyDatabase::open(full_sqlite_name());
    database_ = std::make_shared<SQLite3Wrapper>(handle);
    return handle != nullptr;
}

void Project::closeSQLiteDatabase()
{
    if (!database_)
        return;
    if (DataModelManager* m = manager())
        m->closeSQLite3Database(database_->database());
    database_->setDatabase(nullptr);
    database_.reset();
}

void Project::truncateSQLiteDatabase()
{
    if (DataModelManager* m = manager())
        m->truncateSQLite3Database(database_ ? database_->database() : nullptr);
}

void Project::deleteSQLiteDatabase()
{
    if (DataModelManager* m = manager())
        m->deleteSQLite3DatabaseWithName(full_sqlite_name());
}

// --- logs ---

void Project::appendToFileLogHandle(const QString&)
{
    // Hook: the normal log is not written in this version.
}

void Project::appendToErrorFileLogHandle(const QString& entry)
{
    if (!fileErrorLogHandle_) {
        DataModelManager* m = manager();
        if (!m)
            return;
        fileErrorLogHandle_ = std::make_shared<BufferedFileLogger>(m->fullLogErrorsFileNameWithProjectName(name()), 1024);
    }
    // A URL's credentials never reach a log file.
    fileErrorLogHandle_->appendLogEntry(DisplayText::maskUserInfo(entry));
}

void Project::flushLogs()
{
    if (fileErrorLogHandle_)
        fileErrorLogHandle_->flush();
}

void Project::saveHtmlContent(const QString&, const QString&)
{
    // Hook: page copies are not saved in this version.
}

void Project::saveHtmlData(const QByteArray&, const QString&)
{
    // Hook: page copies are not saved in this version.
}
