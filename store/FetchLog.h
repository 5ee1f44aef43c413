#pragma once

#include "fetch/FetchOutcome.h"

#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>

struct sqlite3;
struct sqlite3_stmt;
class Project;
class FetchLog;
using FetchLogPtr = std::shared_ptr<FetchLog>;

// One row of the FetchLog table: what the last GET of a URL answered (final status or the
// transfer's failure, time taken, redirects followed, final URL, when). It sits beside the
// four crawl tables and never changes them; the audit reports (broken links, redirects,
// sitemap, status columns) read it.
class FetchLog {
public:
    FetchLog(const QString& url, const QString& finalUrl, qint64 status, const QString& failure,
             const QString& failureText, qint64 responseMs, const QList<FetchHop>& redirectChain,
             const QDateTime& fetchedAt);

    // The table's statements, for a new database and for one made before it existed.
    static const char* createTableStatement();
    // Adds the table to a database that holds the four crawl tables and not this one; a file
    // that is not a crawl database is left as it is. Answers whether the table is there.
    static bool addTableWhenMissing(sqlite3* db);
    static bool hasTable(sqlite3* db);

    // Inserts or replaces the row of the outcome's requested URL: the last fetch of a URL
    // wins. A transfer abandoned because the crawl stopped taught nothing and is not kept.
    static bool recordFetch(const FetchOutcome& outcome, const std::shared_ptr<Project>& project);
    static FetchLogPtr getFetchLogWithURL(const QString& url, const std::shared_ptr<Project>& project);
    // Columns url, final_url, status, failure, failure_text, response_ms, redirect_chain,
    // fetched_at from `first` on.
    static FetchLogPtr fetchLogFromStatement(sqlite3_stmt* statement, int first);

    // Links found on crawled pages whose target is broken, and how many targets they reach.
    static qint64 countBrokenLinks(const std::shared_ptr<Project>& project);
    static qint64 countBrokenTargets(const std::shared_ptr<Project>& project);

    // For the report queries: the columns fetchLogFromStatement reads, on the alias F, and
    // the table to read them from (an empty stand-in when a read-only file lacks it, so that
    // the reports still list the pages, without fetch columns).
    static QString columnsOfF();
    static QString tableOrEmpty(sqlite3* db);

    // SQL condition on the alias F: an error status (4xx, 5xx) or a failed transfer. A page
    // refused for its type or its size was answered and is not broken.
    static QString brokenCondition();
    // The same test on a row in memory.
    bool isBroken() const;
    // "404", "timeout", "refused"...: the status, or the failure when no status came.
    QString statusText() const;

    static QString chainToJson(const QList<FetchHop>& chain);
    static QList<FetchHop> chainFromJson(const QString& json);

    QString url() const { return url_; }
    QString finalUrl() const { return finalUrl_; }
    qint64 status() const { return status_; }
    QString failure() const { return failure_; }
    QString failureText() const { return failureText_; }
    qint64 responseMs() const { return responseMs_; }
    QList<FetchHop> redirectChain() const { return redirectChain_; }
    QDateTime fetchedAt() const { return fetchedAt_; }

private:
    QString url_;
    QString finalUrl_;
    qint64 status_ = 0;
    QString failure_;
    QString failureText_;
    qint64 responseMs_ = -1;
    QList<FetchHop> redirectChain_;
    QDateTime fetchedAt_;
};
