#pragma once
// Small helpers shared by the record classes of the crawl database. Each operation prepares,
// binds, steps and finishes its statement; the preparation is done once per connection and
// SQL text (StatementCache), and finishing hands the statement back for the next use.

#include "store/Project.h"
#include "store/SQLite3Wrapper.h"
#include "store/StatementCache.h"

#include <QString>

#include <sqlite3.h>

namespace RecordStatement {

// The project's crawl database, opened on first use; null when there is no project any more
// or when its database could not be opened.
inline sqlite3* databaseOf(const ProjectPtr& project)
{
    return project ? project->sqlite3Database() : nullptr;
}

// Whole statement text, no tail. A null handle counts as a failed preparation: the library
// does not accept one, and the caller traces sqlite3_errmsg(nullptr) like any other failure.
inline bool prepare(sqlite3* db, const char* sql, sqlite3_stmt** stmt)
{
    *stmt = nullptr;
    if (!db)
        return false;
    if ((*stmt = StatementCache::take(db, sql)))
        return true;
    return sqlite3_prepare_v3(db, sql, -1, SQLITE_PREPARE_PERSISTENT, stmt, nullptr) == SQLITE_OK;
}

// A null string binds as NULL, so that the not-null columns refuse it.
inline void bindText(sqlite3_stmt* stmt, int index, const QString& text)
{
    if (text.isNull()) {
        sqlite3_bind_null(stmt, index);
        return;
    }
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(stmt, index, utf8.constData(), -1, SQLITE_TRANSIENT);
}

// Numbers travel as 32-bit integers; larger values wrap.
inline void bindInt(sqlite3_stmt* stmt, int index, qint64 value)
{
    sqlite3_bind_int(stmt, index, static_cast<int>(value));
}

// NULL stays a null string; an empty text stays an empty (non-null) string.
inline QString columnText(sqlite3_stmt* stmt, int column)
{
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
    if (!text)
        return QString();
    const int bytes = sqlite3_column_bytes(stmt, column);
    if (bytes == 0)
        return QStringLiteral("");
    return QString::fromUtf8(text, bytes);
}

inline qint64 columnInt(sqlite3_stmt* stmt, int column)
{
    return sqlite3_column_int(stmt, column);
}

// One step. An answer other than a row or done is a failure of the file or of its lock (damaged
// pages, an I/O error, a lock held too long), noted on the project's database for whoever shows
// the answer. A row the table refuses (a constraint) is no such failure: the record operation
// answers it as before.
inline int step(sqlite3_stmt* stmt, const ProjectPtr& project)
{
    const int rc = sqlite3_step(stmt);
    if (rc == SQLITE_ROW || rc == SQLITE_DONE || (rc & 0xff) == SQLITE_CONSTRAINT)
        return rc;
    sqlite3* db = sqlite3_db_handle(stmt);
    int code = sqlite3_extended_errcode(db);
    if ((code & 0xff) != (rc & 0xff))
        code = rc;  // another thread's statement spoke since
    if (const auto wrapper = project ? project->database() : nullptr)
        wrapper->noteStepFailure(code, QString::fromUtf8(sqlite3_errstr(code)));
    return rc;
}

// The loop condition of the multi-row queries: a row, and nothing else, goes on. A failed step
// must end the loop: stepping again would start the statement over from its first row.
inline bool nextRow(sqlite3_stmt* stmt, const ProjectPtr& project)
{
    return step(stmt, project) == SQLITE_ROW;
}

inline void finish(sqlite3_stmt* stmt)
{
    StatementCache::giveBack(stmt);
}

// Whether the database holds a table of that name.
// A count statement's answer (the value of its last row), finished; 0 without a row.
inline qint64 countValue(sqlite3_stmt* stmt, const ProjectPtr& project)
{
    qint64 count = 0;
    while (nextRow(stmt, project))
        count = columnInt(stmt, 0);
    finish(stmt);
    return count;
}

inline bool hasTable(sqlite3* db, const char* name)
{
    sqlite3_stmt* stmt = nullptr;
    if (!db || sqlite3_prepare_v2(db, "select count(*) from sqlite_master where type='table' and name=?", -1, &stmt,
                                  nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt);
        return false;
    }
    sqlite3_bind_text(stmt, 1, name, -1, SQLITE_STATIC);
    const bool there = sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_int(stmt, 0) == 1;
    sqlite3_finalize(stmt);
    return there;
}

// How descriptions print a missing string.
inline QString describe(const QString& text)
{
    return text.isNull() ? QStringLiteral("(null)") : text;
}

} // namespace RecordStatement
