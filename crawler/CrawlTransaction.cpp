#include "crawler/CrawlTransaction.h"

#include "store/DatabaseErrorLog.h"
#include "store/PageRowCache.h"
#include "base/DebugTrace.h"

#include <sqlite3.h>

CrawlTransaction::CrawlTransaction(sqlite3* database) : database_(database)
{
    // A deferred transaction takes no lock until the first write.
    open_ = database_ && sqlite3_get_autocommit(database_)
            && sqlite3_exec(database_, "begin", nullptr, nullptr, nullptr) == SQLITE_OK;
    if (!open_)
        return;
    failuresAtStart_ = DatabaseErrorLog::failureCount();
    // After a failed write the library may give the transaction up by itself; the page's
    // later statements would then each commit on their own (its done mark among them).
    sqlite3_commit_hook(database_, &CrawlTransaction::vetoOtherCommits, this);
}

CrawlTransaction::~CrawlTransaction()
{
    if (open_)
        commit();
}

int CrawlTransaction::vetoOtherCommits(void* transaction)
{
    return static_cast<CrawlTransaction*>(transaction)->committing_ ? 0 : 1;
}

void CrawlTransaction::end()
{
    sqlite3_commit_hook(database_, nullptr, nullptr);
    if (!sqlite3_get_autocommit(database_)) {
        sqlite3_exec(database_, "rollback", nullptr, nullptr, nullptr);
        // The records kept in memory may hold writes that are undone now.
        PageRowCache::clear(database_);
    }
    open_ = false;
}

bool CrawlTransaction::hasFailed() const
{
    return open_ && (DatabaseErrorLog::failureCount() != failuresAtStart_ || sqlite3_get_autocommit(database_));
}

bool CrawlTransaction::commit()
{
    if (!open_)
        return true;
    const bool failedWrite = DatabaseErrorLog::failureCount() != failuresAtStart_;
    if (failedWrite || sqlite3_get_autocommit(database_)) {
        // The page's writes and its done mark are undone together (by the library already,
        // or here).
        const QString failure = DatabaseErrorLog::lastFailure();
        errorMessage_ = failedWrite && !failure.isEmpty() ? failure
                                                         : QStringLiteral("a write failed and the last page's changes were undone");
        DebugTrace("commit Error::%s", qPrintable(errorMessage_));
        PageRowCache::clear(database_);
        end();
        return false;
    }
    // Another process's lock is waited for by the connection itself (its busy time-out).
    committing_ = true;
    const bool committed = sqlite3_exec(database_, "commit", nullptr, nullptr, nullptr) == SQLITE_OK;
    committing_ = false;
    if (!committed) {
        errorMessage_ = QString::fromUtf8(sqlite3_errmsg(database_));
        DebugTrace("commit Error::%s", qPrintable(errorMessage_));
    }
    end();
    return committed;
}
