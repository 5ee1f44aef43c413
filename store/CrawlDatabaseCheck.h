#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

class StringTable;
struct sqlite3;
struct sqlite3_stmt;

// What must hold in a crawl database between two pages of a crawl: the crawler writes each
// queue entry's records and its done mark in one transaction, so these hold after a crash
// as well as after a finished crawl. Reads only.
class CrawlDatabaseCheck {
public:
    // One rule: what was checked (with its figures) and what breaks it (empty: it holds).
    struct Rule {
        QString title;
        QStringList problems;
        qint64 problemCount = 0;  // problems holds at most the first kMaxListed
        QStringList notes;        // worth knowing, but no fault of the database
    };
    static constexpr int kMaxListed = 20;

    // The rules' titles and problems are said in the language of `texts`.
    CrawlDatabaseCheck(sqlite3* database, const StringTable& texts) : db_(database), texts_(texts) {}

    // The project's counters as the registry keeps them; the counter rule is left out
    // without them (for instance while a crawl runs and keeps them in memory).
    void setProjectCounters(qint32 pagesCount, qint32 maxDepth);

    QList<Rule> run() const;

private:
    Rule integrity() const;
    Rule linksReceived() const;
    Rule onePagePerURL(bool slashTwins) const;
    Rule linksBetweenPages() const;
    Rule analysedPagesAreDone() const;
    Rule doneEntriesWereReached() const;
    // A web crawl's: every done entry has its answer recorded; every link joins a page of
    // the site to a recorded target.
    Rule webEntriesAnswered() const;
    Rule webLinksWhole() const;
    Rule counters() const;

    // Runs a query and hands each row to `row`, which answers the problem it shows;
    // stops on the first step that is not a row. Answers false (and a problem) when the
    // statement cannot be read.
    bool forEachRow(const char* sql, Rule* rule, const std::function<QString(sqlite3_stmt*)>& row) const;
    qint64 count(const char* sql, Rule* rule) const;

    QString tr(const char* key) const;

    sqlite3* db_;
    const StringTable& texts_;
    bool hasCounters_ = false;
    qint32 pagesCount_ = 0;
    qint32 maxDepth_ = 0;
};
