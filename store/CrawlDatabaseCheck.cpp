#include "store/CrawlDatabaseCheck.h"

#include "store/WebStore.h"

#include "store/StringTable.h"

#include <QHash>

#include <sqlite3.h>

namespace {

QString text(sqlite3_stmt* stmt, int column)
{
    const auto* value = reinterpret_cast<const char*>(sqlite3_column_text(stmt, column));
    return value ? QString::fromUtf8(value, sqlite3_column_bytes(stmt, column)) : QStringLiteral("(null)");
}

void addProblem(CrawlDatabaseCheck::Rule* rule, const QString& problem)
{
    if (problem.isEmpty())
        return;
    if (rule->problems.size() < CrawlDatabaseCheck::kMaxListed)
        rule->problems.append(problem);
    ++rule->problemCount;
}

// The crawler finds a page by its URL with or without one trailing "/" (QuillmerePage's
// look-up); these fragments name the URLs that one look-up treats as the same page.
// For a page P: the queue entries whose look-up finds it.
const char* const kEntriesOfPage =
    "(P.url, P.url || '/', case when P.url like '%/' then substr(P.url, 1, length(P.url) - 1) end)";

} // namespace

QString CrawlDatabaseCheck::tr(const char* key) const
{
    return texts_.text(key);
}

void CrawlDatabaseCheck::setProjectCounters(qint32 pagesCount, qint32 maxDepth)
{
    hasCounters_ = true;
    pagesCount_ = pagesCount;
    maxDepth_ = maxDepth;
}

QList<CrawlDatabaseCheck::Rule> CrawlDatabaseCheck::run() const
{
    // One read transaction: a crawl running meanwhile commits its pages before or after it.
    const bool snapshot = sqlite3_get_autocommit(db_) && sqlite3_exec(db_, "begin", nullptr, nullptr, nullptr) == SQLITE_OK;
    // A web crawl files pages by their URL as a browser reads it and records every answer
    // beside the crawl tables: its entries are judged by those records.
    const bool web = WebStore::hasTables(db_);
    QList<Rule> rules{integrity(), linksReceived(), onePagePerURL(!web), linksBetweenPages(), analysedPagesAreDone()};
    if (web)
        rules << webEntriesAnswered() << webLinksWhole();
    else
        rules << doneEntriesWereReached();
    if (hasCounters_)
        rules.append(counters());
    if (snapshot)
        sqlite3_exec(db_, "rollback", nullptr, nullptr, nullptr);
    return rules;
}

bool CrawlDatabaseCheck::forEachRow(const char* sql, Rule* rule, const std::function<QString(sqlite3_stmt*)>& row) const
{
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db_, sql, -1, &stmt, nullptr) != SQLITE_OK) {
        addProblem(rule, tr("CheckCannotRead").arg(QString::fromUtf8(sqlite3_errmsg(db_))));
        sqlite3_finalize(stmt);
        return false;
    }
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW)
        addProblem(rule, row(stmt));
    const bool done = rc == SQLITE_DONE;
    if (!done)
        addProblem(rule, tr("CheckCannotRead").arg(QString::fromUtf8(sqlite3_errmsg(db_))));
    sqlite3_finalize(stmt);
    return done;
}

qint64 CrawlDatabaseCheck::count(const char* sql, Rule* rule) const
{
    qint64 value = 0;
    forEachRow(sql, rule, [&value](sqlite3_stmt* stmt) {
        value = sqlite3_column_int64(stmt, 0);
        return QString();
    });
    return value;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::integrity() const
{
    Rule rule;
    QStringList answers;
    forEachRow("pragma integrity_check(21)", &rule, [&answers](sqlite3_stmt* stmt) {
        answers.append(text(stmt, 0));
        return QString();
    });
    if (answers != QStringList{QStringLiteral("ok")}) {
        for (const QString& answer : answers)
            addProblem(&rule, answer);
    }
    rule.title = tr("CheckIntegrityTitle");
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::linksReceived() const
{
    Rule rule;
    const qint64 pages = count("select count(*) from Page", &rule);
    forEachRow("select url, in_link_count, received from (select P.idt, P.url, P.in_link_count, "
               "(select count(*) from Links L where L.idt_page = P.idt) as received from Page P) "
               "where in_link_count is not received order by idt",
               &rule, [this](sqlite3_stmt* stmt) {
                   return tr("CheckLinksReceivedProblem")
                       .arg(text(stmt, 0), text(stmt, 1), text(stmt, 2));
               });
    rule.title = tr("CheckLinksReceivedTitle").arg(pages);
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::onePagePerURL(bool slashTwins) const
{
    Rule rule;
    const qint64 pages = count("select count(*) from Page", &rule);
    forEachRow("select url, count(*) from Page group by url having count(*) > 1", &rule, [this](sqlite3_stmt* stmt) {
        return tr("CheckDuplicateURLProblem").arg(text(stmt, 0), text(stmt, 1));
    });
    // The classic rules file /a and /a/ as one page; for a browser they are two URLs.
    if (slashTwins) {
        forEachRow("select a.url, b.url from Page a join Page b on b.url = a.url || '/'", &rule,
                   [this](sqlite3_stmt* stmt) { return tr("CheckSlashTwinProblem").arg(text(stmt, 0), text(stmt, 1)); });
    }
    rule.title = tr("CheckOnePagePerURLTitle").arg(pages);
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::linksBetweenPages() const
{
    Rule rule;
    const qint64 links = count("select count(*) from Links", &rule);
    forEachRow("select idt_source, idt_page, anchor from Links L "
               "where not exists (select 1 from Page P where P.idt = L.idt_page) "
               "or not exists (select 1 from Page P where P.idt = L.idt_source)",
               &rule, [this](sqlite3_stmt* stmt) {
                   return tr("CheckDanglingLinkProblem")
                       .arg(text(stmt, 0), text(stmt, 1), text(stmt, 2));
               });
    rule.title = tr("CheckLinksBetweenPagesTitle").arg(links);
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::analysedPagesAreDone() const
{
    // A page gets its title while its own queue entry is analysed, in the transaction that
    // marks the entry done: a titled page whose entry still waits lost its done mark.
    Rule rule;
    const qint64 analysed = count("select count(*) from Page where title <> ''", &rule);
    // "+": found by URL, not by state (the state's index would walk every done entry).
    const QByteArray sql = QByteArray("select P.url from Page P where P.title <> '' and not exists (select 1 from "
                                      "DownloaderQueue Q where +Q.perform_done = 1 and Q.url in ")
                           + kEntriesOfPage + ") order by P.idt";
    forEachRow(sql.constData(), &rule, [this](sqlite3_stmt* stmt) {
        return tr("CheckAnalysedNotDoneProblem").arg(text(stmt, 0));
    });
    rule.title = tr("CheckAnalysedPagesTitle").arg(analysed);
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::doneEntriesWereReached() const
{
    // What a done entry leaves: its page with a title (analysed, or the error title of a
    // failed fetch), or else the answer's LinkHeaders row (a page that could not be parsed, or
    // that asked not to be indexed or was canonical elsewhere before any link named it). A
    // redirect leaves neither: its target is queued after it at the next depth, unless that
    // target was analysed before it or sits 20 times in the queue already. Entries are taken
    // in the order of their ids, so "before" and "after" are their ids' order.
    Rule rule;
    const qint64 done = count("select count(*) from DownloaderQueue where perform_done = 1", &rule);
    const bool manyTimesQueued =
        count("select count(*) from (select url from DownloaderQueue group by url having count(*) >= 20)", &rule) > 0;
    const qint64 firstAnalysed = count(
        "select coalesce(min(Q.idt), 0) from DownloaderQueue Q where Q.perform_done = 1 and exists (select 1 from Page P "
        "where P.title <> '' and P.url in (case when Q.url like '%/' then substr(Q.url, 1, length(Q.url) - 1) else Q.url "
        "end, case when Q.url like '%/' then Q.url else Q.url || '/' end))",
        &rule);
    QHash<qint64, qint64> lastAtDepth;
    forEachRow("select depth, max(idt) from DownloaderQueue group by depth", &rule, [&](sqlite3_stmt* stmt) {
        lastAtDepth.insert(sqlite3_column_int64(stmt, 0), sqlite3_column_int64(stmt, 1));
        return QString();
    });
    qint64 redirects = 0;
    forEachRow(
        "with Done as (select idt, url, depth, case when url like '%/' then substr(url, 1, length(url) - 1) else url end "
        "as stem from DownloaderQueue where perform_done = 1) "
        "select D.idt, D.url, D.depth from Done D "
        "where not exists (select 1 from Page P where P.title <> '' and P.url in (D.stem, D.stem || '/')) "
        "and not exists (select 1 from LinkHeaders H where H.url = D.url) order by D.idt",
        &rule, [&](sqlite3_stmt* stmt) {
            const qint64 idt = sqlite3_column_int64(stmt, 0);
            const qint64 depth = sqlite3_column_int64(stmt, 2);
            const bool targetQueuedAfter = lastAtDepth.value(depth + 1, 0) > idt;
            const bool targetAnalysedBefore = firstAnalysed > 0 && firstAnalysed < idt;
            if (targetQueuedAfter || targetAnalysedBefore || manyTimesQueued) {
                ++redirects;
                return QString();
            }
            return tr("CheckDoneNotReachedProblem").arg(text(stmt, 1));
        });
    rule.title = tr("CheckDoneEntriesTitle").arg(done).arg(redirects);
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::webEntriesAnswered() const
{
    // A web crawl records an entry's answer (or what kept it from asking) in the transaction
    // that marks the entry done.
    Rule rule;
    const qint64 done = count("select count(*) from DownloaderQueue where perform_done = 1", &rule);
    forEachRow("select Q.url from DownloaderQueue Q where Q.perform_done = 1 and not exists (select 1 from WebTarget T "
               "where T.url = Q.url and T.verdict <> 'pending') order by Q.idt",
               &rule, [this](sqlite3_stmt* stmt) { return tr("CheckWebEntryProblem").arg(text(stmt, 0)); });
    rule.title = tr("CheckWebEntriesTitle").arg(done);
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::webLinksWhole() const
{
    Rule rule;
    const qint64 links = count("select count(*) from WebLink", &rule);
    forEachRow("select L.idt_source, L.idt_target from WebLink L where not exists (select 1 from Page P where P.idt = "
               "L.idt_source) or not exists (select 1 from WebTarget T where T.idt = L.idt_target)",
               &rule, [this](sqlite3_stmt* stmt) { return tr("CheckWebLinkProblem").arg(text(stmt, 0), text(stmt, 1)); });
    rule.title = tr("CheckWebLinksTitle").arg(links);
    return rule;
}

CrawlDatabaseCheck::Rule CrawlDatabaseCheck::counters() const
{
    // Every page counted came from a queue entry, and the depth kept is that of a page taken
    // from the queue. The count is the one committed with the pages, or the registry's for a
    // database made before the count was kept there: that one may lag behind the pages
    // analysed after a crawl killed outright, which is said, not failed.
    Rule rule;
    const qint64 entries = count("select count(*) from DownloaderQueue", &rule);
    const qint64 analysed = count("select count(*) from Page where title <> ''", &rule);
    const qint64 deepest = count("select coalesce(max(depth), 0) from DownloaderQueue", &rule);
    if (pagesCount_ < 0 || pagesCount_ > entries)
        addProblem(&rule, tr("CheckPagesCountProblem").arg(pagesCount_).arg(entries));
    if (maxDepth_ < 0 || maxDepth_ > deepest)
        addProblem(&rule, tr("CheckMaxDepthProblem").arg(maxDepth_).arg(deepest));
    if (pagesCount_ < analysed)
        rule.notes.append(tr("CheckPagesCountNote").arg(pagesCount_).arg(analysed));
    rule.title = tr("CheckCountersTitle")
                     .arg(pagesCount_).arg(entries).arg(maxDepth_).arg(deepest).arg(analysed);
    return rule;
}
