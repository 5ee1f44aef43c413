#include "app/ListReadConnection.h"

#include "base/DebugTrace.h"
#include "store/Project.h"
#include "store/SQLite3Wrapper.h"

#include <QFile>

#include <sqlite3.h>

namespace {
// The attributes the record queries use, as they stand now: the crawl moves them on.
void copyAttributes(const Project& source, Project* reader)
{
    reader->setName(source.name());
    reader->setUrl(source.url());
    reader->setSqlite_name(source.sqlite_name());
    reader->setCreation_date(source.creation_date());
    reader->setCrawler_start_date(source.crawler_start_date());
    reader->setCrawler_stop_date(source.crawler_stop_date());
    reader->setLimit_depth(source.limit_depth());
    reader->setLimit_page_count(source.limit_page_count());
    reader->setMax_depth(source.max_depth());
    reader->setPages_count(source.pages_count());
    reader->setExplore_no_index(source.explore_no_index());
    reader->setExplore_no_follow(source.explore_no_follow());
    reader->setExplore_ariane(source.explore_ariane());
    reader->setExplore_sitewides(source.explore_sitewides());
}

// A stand-in project that reads through `db`.
std::shared_ptr<Project> standIn(const Project& source, sqlite3* db)
{
    auto reader = std::make_shared<Project>();
    copyAttributes(source, reader.get());
    reader->setDatabase(std::make_shared<SQLite3Wrapper>(db));
    return reader;
}

sqlite3* openForReading(const QString& path)
{
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX,
                        nullptr)
        != SQLITE_OK) {
        DebugTrace("ListReadConnection open Error::%s", db ? sqlite3_errmsg(db) : "out of memory");
        sqlite3_close(db);
        return nullptr;
    }
    // A commit of the crawl holds the log for a moment.
    sqlite3_busy_timeout(db, 10000);
    // Only a database on the write-ahead log can be read beside a writer; one that cannot
    // be read at all is read through the project's own connection, as before.
    sqlite3_stmt* stmt = nullptr;
    bool wal = false;
    if (sqlite3_prepare_v2(db, "PRAGMA journal_mode", -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW)
        wal = QByteArray(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0))).toLower() == "wal";
    sqlite3_finalize(stmt);
    if (!wal) {
        sqlite3_close(db);
        return nullptr;
    }
    return db;
}
} // namespace

ListReadConnection::~ListReadConnection()
{
    close();
}

std::shared_ptr<Project> ListReadConnection::readerFor(const std::shared_ptr<Project>& project)
{
    if (!project) {
        close();
        return nullptr;
    }
    const QString path = project->full_sqlite_name();
    if (reader_ && source_.lock() == project && path_ == path) {
        copyAttributes(*project, reader_.get());
        return reader_;
    }
    close();
    // The project's own connection makes the database and its log when they are not there
    // yet; it is open already while a crawl runs.
    if (!project->sqlite3Database())
        return project;
    sqlite3* db = openForReading(path);
    if (!db)
        return project;
    reader_ = standIn(*project, db);
    source_ = project;
    path_ = path;
    return reader_;
}

void ListReadConnection::close()
{
    // The stand-in closes its connection as it goes.
    reader_.reset();
    source_.reset();
    path_.clear();
}
