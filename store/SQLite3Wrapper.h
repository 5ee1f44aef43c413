#pragma once

#include <QString>

#include <mutex>

struct sqlite3;

// Carries a project's open database handle. It does not own the handle: whoever opened it
// closes it (the project, through its manager).
//
// It also keeps the first statement step that failed on the handle (damaged pages, an I/O
// error, a lock held too long): the record operations answer what they read before it, and
// whoever shows their answers asks here whether they are whole.
class SQLite3Wrapper {
public:
    explicit SQLite3Wrapper(sqlite3* pointer) : database_(pointer) {}
    static SQLite3Wrapper* initWihSQLite3Pointer(sqlite3* pointer) { return new SQLite3Wrapper(pointer); }

    sqlite3* database() const { return database_; }
    void setDatabase(sqlite3* pointer) { database_ = pointer; }

    // The first failure is kept: later ones are usually its consequences.
    void noteStepFailure(int code, const QString& message)
    {
        std::lock_guard lock(mutex_);
        if (failureCode_ != 0)
            return;
        failureCode_ = code;
        failureMessage_ = message;
    }
    bool hasStepFailure() const
    {
        std::lock_guard lock(mutex_);
        return failureCode_ != 0;
    }
    // The library's extended result code of the failed step; 0 when none failed.
    int stepFailureCode() const
    {
        std::lock_guard lock(mutex_);
        return failureCode_;
    }
    QString stepFailureMessage() const
    {
        std::lock_guard lock(mutex_);
        return failureMessage_;
    }

private:
    sqlite3* database_ = nullptr;
    mutable std::mutex mutex_;
    int failureCode_ = 0;
    QString failureMessage_;
};
