#include "crawler/CrawlTransaction.h"

#include "store/DebugTrace.h"

#include <sqlite3.h>


CrawlTransaction::CrawlTransaction(sqlite3* database) : database_(database)
{
    // A deferred transaction takes no lock until the first write.
    open_ = database_ && sqlite3_get_autocommit(database_)
            && sqlite3_exec(database_, "begin", nullptr, nullptr, nullptr) == SQLITE_OK;
}

CrawlTransaction::~CrawlTransaction()
{
    if (open_)
        commit();
}

bool CrawlTransaction::commit()
{
    if (!open_)
        return true;
    if (sqlite3_get_autocommit(database_)) {
        // The library gave the transaction up itself after a failed write (a full disk, an
        // I/O error): the page's writes and its done mark were undone together.
        errorMessage_ = QStringLiteral("a write failed and the last page's changes were undone");
        DebugTrace("commit Error::%s", qPrintable(errorMessage_));
        open_ = false;
        return false;
    }
    // Another process's lock is waited for by the connection itself (its busy time-out).
    if (sqlite3_exec(database_, "commit", nullptr, nullptr, nullptr) == SQLITE_OK) {
        open_ = false;
        return true;
    }
    errorMessage_ = QString::fromUtf8(sqlite3_errmsg(database_));
    DebugTrace("commit Error::%s", qPrintable(errorMessage_));
    open_ = false;
    return false;
}
