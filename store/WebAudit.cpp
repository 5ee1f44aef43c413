#include "store/WebAudit.h"

#include "base/DebugTrace.h"
#include "store/AuditListing.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <QRegularExpression>
#include <QSet>
#include <QUrl>

#include <sqlite3.h>

using namespace RecordStatement;

namespace {

const char* const kColumns =
    "select T.url, T.kind, T.verdict, T.status, T.failure, T.rule, T.final_url, P.url, L.anchor, L.tag, L.attribute, "
    "L.fragment from WebTarget T left join WebLink L on L.idt_target = T.idt left join Page P on P.idt = L.idt_source ";

bool forEachRow(const ProjectPtr& project, const QByteArray& sql, const WebAudit::Visit& visit)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, sql.constData(), &stmt)) {
        DebugTrace("WebAudit Error::%s", sqlite3_errmsg(db));
        return false;
    }
    int rc = SQLITE_ROW;
    while ((rc = step(stmt, project)) == SQLITE_ROW) {
        WebAudit::Row row;
        row.url = columnText(stmt, 0);
        row.kind = columnText(stmt, 1);
        row.verdict = columnText(stmt, 2);
        row.status = sqlite3_column_int(stmt, 3);
        row.failure = columnText(stmt, 4);
        row.rule = columnText(stmt, 5);
        row.finalUrl = columnText(stmt, 6);
        row.sourceUrl = columnText(stmt, 7);
        row.anchor = columnText(stmt, 8);
        row.tag = columnText(stmt, 9);
        row.attribute = columnText(stmt, 10);
        row.fragment = columnText(stmt, 11);
        visit(row);
    }
    finish(stmt);
    return rc == SQLITE_DONE;
}

qint64 countOf(const ProjectPtr& project, const char* sql)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, sql, &stmt)) {
        DebugTrace("WebAudit Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    qint64 n = 0;
    if (step(stmt, project) == SQLITE_ROW)
        n = sqlite3_column_int64(stmt, 0);
    finish(stmt);
    return n;
}

const char* const kBrokenFragmentCondition =
    "L.fragment is not null and L.fragment <> '' and lower(L.fragment) <> 'top' and T.fragment_ids is not null "
    "and instr(char(10) || T.fragment_ids || char(10), char(10) || L.fragment || char(10)) = 0";

} // namespace

QString WebAudit::Row::statusText() const
{
    if (status > 0)
        return QString::number(status);
    if (!failure.isEmpty())
        return failure;
    return verdict;
}

bool WebAudit::forEachBroken(const ProjectPtr& project, const Visit& visit)
{
    return forEachRow(project,
                      QByteArray(kColumns)
                          + "where T.verdict = 'broken' and T.kind <> 'other' order by T.url, L.idt_source, L.rowid",
                      visit);
}

bool WebAudit::forEachExternal(const ProjectPtr& project, const Visit& visit)
{
    return forEachRow(project, QByteArray(kColumns) + "where T.kind = 'external' order by T.url, L.idt_source, L.rowid",
                      visit);
}

bool WebAudit::forEachResource(const ProjectPtr& project, const Visit& visit)
{
    return forEachRow(project, QByteArray(kColumns) + "where T.kind = 'resource' order by T.url, L.idt_source, L.rowid",
                      visit);
}

bool WebAudit::forEachBrokenFragment(const ProjectPtr& project, const Visit& visit)
{
    return forEachRow(project,
                      QByteArray(kColumns).replace("left join WebLink", "join WebLink").replace("left join Page", "join Page")
                          + "where " + kBrokenFragmentCondition + " order by T.url, L.fragment, L.idt_source, L.rowid",
                      visit);
}

bool WebAudit::forEachRobotsBlocked(const ProjectPtr& project, const Visit& visit)
{
    return forEachRow(project, QByteArray(kColumns) + "where T.verdict = 'robots' order by T.url, L.idt_source, L.rowid",
                      visit);
}

QMap<QString, QMap<QString, qint64>> WebAudit::countsByKind(const ProjectPtr& project)
{
    QMap<QString, QMap<QString, qint64>> counts;
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    const char* sql =
        "select kind, case when verdict in ('ok', 'broken', 'redirect') then "
        "case when failure <> '' and status = 0 then 'failed' when status >= 500 then '5xx' when status >= 400 then "
        "'4xx' when status >= 300 then '3xx' when status >= 200 then '2xx' when verdict = 'redirect' then 'pending' "
        "else 'failed' end else verdict end as class, count(*) from WebTarget group by 1, 2";
    if (!prepare(db, sql, &stmt)) {
        DebugTrace("countsByKind Error::%s", sqlite3_errmsg(db));
        return counts;
    }
    while (nextRow(stmt, project))
        counts[columnText(stmt, 0)][columnText(stmt, 1)] += sqlite3_column_int64(stmt, 2);
    finish(stmt);
    return counts;
}

qint64 WebAudit::countBrokenLinks(const ProjectPtr& project)
{
    return countOf(project, "select count(*) from WebLink L join WebTarget T on T.idt = L.idt_target where "
                            "T.verdict = 'broken' and T.kind <> 'other'");
}

qint64 WebAudit::countBrokenTargets(const ProjectPtr& project)
{
    return countOf(project, "select count(*) from WebTarget where verdict = 'broken' and kind <> 'other'");
}

qint64 WebAudit::countBrokenFragments(const ProjectPtr& project)
{
    return countOf(project, QByteArray("select count(*) from WebLink L join WebTarget T on T.idt = L.idt_target where ")
                                .append(kBrokenFragmentCondition)
                                .constData());
}

bool WebAudit::looksMisread(const QString& targetUrl, const QString& sourceUrl)
{
    static const QRegularExpression schemeSegment(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    const QUrl target(targetUrl);
    const QStringList segments = target.path(QUrl::FullyDecoded).split(QLatin1Char('/'));
    for (const auto& segment : segments) {
        // "ftp:" or "news:comp.x" read as a folder; " https:..." kept with its blank.
        if (schemeSegment.match(segment).hasMatch() || (!segment.isEmpty() && segment.front().isSpace()))
            return true;
    }
    // "#" and "" name the page itself; read as paths they name the page's folder.
    if (!sourceUrl.isEmpty()) {
        const QUrl source(sourceUrl);
        QString folder = source.adjusted(QUrl::RemoveFilename | QUrl::RemoveQuery | QUrl::RemoveFragment).toString();
        auto bare = [](QString s) {
            while (s.endsWith(QLatin1Char('/')))
                s.chop(1);
            return s;
        };
        if (bare(folder) == bare(target.adjusted(QUrl::RemoveQuery | QUrl::RemoveFragment).toString())
            && bare(folder) != bare(source.toString()))
            return true;
    }
    return false;
}

qint64 WebAudit::countClassicMisreadBroken(const ProjectPtr& project)
{
    QSet<QString> misread;
    AuditListing::forEach(AuditListing::Kind::Broken, project, [&](const AuditListing::Row& row) {
        if (looksMisread(row.fetch->url(), row.sourceUrl))
            misread.insert(row.fetch->url());
    });
    return misread.size();
}
