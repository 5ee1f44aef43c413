#pragma once

#include <QString>

struct sqlite3;

// Groups writes into one transaction, committed at the end. The crawler puts the writes of
// several queue entries in one (each entry's records with its done mark), at one disk sync
// for the group; the vacuum cleaner puts all of its own in one. When a write failed (a full
// disk, a directory that cannot be written, an I/O error), nothing of the group is kept:
// commit() rolls it back and answers false, and its entries stay waiting for a later crawl.
class CrawlTransaction {
public:
    explicit CrawlTransaction(sqlite3* database);
    ~CrawlTransaction();  // commits if commit() was not called
    CrawlTransaction(const CrawlTransaction&) = delete;
    CrawlTransaction& operator=(const CrawlTransaction&) = delete;

    bool commit();
    // A write failed since the transaction began (it will roll back): nothing more should
    // be written before commit() is called.
    bool hasFailed() const;
    QString errorMessage() const { return errorMessage_; }

private:
    static int vetoOtherCommits(void* transaction);
    void end();

    sqlite3* database_;
    bool open_ = false;
    bool committing_ = false;
    quint64 failuresAtStart_ = 0;
    QString errorMessage_;
};
