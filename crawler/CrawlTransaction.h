#pragma once

#include <QString>

struct sqlite3;

// Groups the writes of one queue entry into one transaction, committed at the end, never
// rolled back: the results are those of separate statements, at one disk sync a page.
class CrawlTransaction {
public:
    explicit CrawlTransaction(sqlite3* database);
    ~CrawlTransaction();  // commits if commit() was not called
    CrawlTransaction(const CrawlTransaction&) = delete;
    CrawlTransaction& operator=(const CrawlTransaction&) = delete;

    bool commit();
    QString errorMessage() const { return errorMessage_; }

private:
    sqlite3* database_;
    bool open_ = false;
    QString errorMessage_;
};
