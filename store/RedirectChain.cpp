#include "store/RedirectChain.h"

#include "base/DebugTrace.h"
#include "store/RecordStatement.h"

#include <sqlite3.h>

using namespace RecordStatement;

namespace {
const char* const kCreateTable =
    "create table if not exists RedirectChain (url text primary key not null, origin text not null, "
    "hops integer not null)";
const char* const kClear = "delete from RedirectChain";
const char* const kGetLink = "select origin,hops from RedirectChain where url = ?";
const char* const kRecordLink = "insert or replace into RedirectChain(url,origin,hops) values(?,?,?)";
} // namespace

bool RedirectChain::prepareTable(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    if (!db || sqlite3_exec(db, kCreateTable, nullptr, nullptr, nullptr) != SQLITE_OK) {
        DebugTrace("prepareTable Error::%s", sqlite3_errmsg(db));
        return false;
    }
    return true;
}

void RedirectChain::clear(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    if (!db || sqlite3_exec(db, kClear, nullptr, nullptr, nullptr) != SQLITE_OK)
        DebugTrace("clear Error::%s", sqlite3_errmsg(db));
}

RedirectChain::Link RedirectChain::linkOf(const QString& url, const ProjectPtr& project)
{
    Link link{url, 0};
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetLink, &stmt)) {
        DebugTrace("linkOf Error::%s", sqlite3_errmsg(db));
        return link;
    }
    bindText(stmt, 1, url);
    if (step(stmt, project) == SQLITE_ROW) {
        link.origin = columnText(stmt, 0);
        link.hops = int(columnInt(stmt, 1));
    }
    finish(stmt);
    return link;
}

bool RedirectChain::recordLink(const QString& url, const Link& link, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kRecordLink, &stmt)) {
        DebugTrace("recordLink Error::%s", sqlite3_errmsg(db));
        return false;
    }
    bindText(stmt, 1, url);
    bindText(stmt, 2, link.origin);
    bindInt(stmt, 3, link.hops);
    const bool done = step(stmt, project) == SQLITE_DONE;
    finish(stmt);
    return done;
}
