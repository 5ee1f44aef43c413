#include "store/FetchLog.h"

#include "base/DebugTrace.h"
#include "store/RecordStatement.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <sqlite3.h>

using namespace RecordStatement;

namespace {

const char* const kCreateTable =
    "create table FetchLog (url text primary key not null, final_url text not null, status integer not null, "
    "failure text not null, failure_text text not null, response_ms integer not null, "
    "redirect_count integer not null, redirect_chain text not null, fetched_at text not null)";
const char* const kRecordFetch =
    "insert or replace into FetchLog(url,final_url,status,failure,failure_text,response_ms,redirect_count,"
    "redirect_chain,fetched_at) values(?,?,?,?,?,?,?,?,?)";
const char* const kGetFetchLog =
    "select url,final_url,status,failure,failure_text,response_ms,redirect_chain,fetched_at from FetchLog where url = ?";

// The failures that leave a link unusable; a type or size refusal came with an answer.
const char* const kBrokenFailures = "'timeout','refused','dns','too-many-redirects','bad-url','error'";

QString textOrEmpty(const QString& text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

qint64 countOf(const QString& sql, const char* operation, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    const QByteArray text = sql.toUtf8();
    if (!prepare(db, text.constData(), &stmt)) {
        DebugTrace("%s Error::%s", operation, sqlite3_errmsg(db));
        return 0;
    }
    qint64 count = 0;
    if (step(stmt, project) == SQLITE_ROW)
        count = sqlite3_column_int64(stmt, 0);
    finish(stmt);
    return count;
}

} // namespace

FetchLog::FetchLog(const QString& url, const QString& finalUrl, qint64 status, const QString& failure,
                   const QString& failureText, qint64 responseMs, const QList<FetchHop>& redirectChain,
                   const QDateTime& fetchedAt)
    : url_(url)
    , finalUrl_(finalUrl)
    , status_(status)
    , failure_(failure)
    , failureText_(failureText)
    , responseMs_(responseMs)
    , redirectChain_(redirectChain)
    , fetchedAt_(fetchedAt)
{
}

const char* FetchLog::createTableStatement()
{
    return kCreateTable;
}

bool FetchLog::hasTable(sqlite3* db)
{
    return RecordStatement::hasTable(db, "FetchLog");
}

bool FetchLog::addTableWhenMissing(sqlite3* db)
{
    if (!db)
        return false;
    sqlite3_stmt* stmt = nullptr;
    // Looked up first: a database that has the table is only read, even by a reader that
    // runs beside a crawl.
    if (sqlite3_prepare_v2(db,
                           "select count(*) from sqlite_master where type='table' and name in "
                           "('Page','Links','DownloaderQueue','LinkHeaders','FetchLog')",
                           -1, &stmt, nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt);
        return false;
    }
    const int tables = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int(stmt, 0) : -1;
    sqlite3_finalize(stmt);
    if (tables == 5)
        return true;
    if (tables != 4 || hasTable(db))
        return hasTable(db);
    if (sqlite3_exec(db, kCreateTable, nullptr, nullptr, nullptr) != SQLITE_OK) {
        DebugTrace("addTableWhenMissing Error::%s", sqlite3_errmsg(db));
        return false;
    }
    return true;
}

bool FetchLog::recordFetch(const FetchOutcome& outcome, const ProjectPtr& project)
{
    if (!outcome.isValid() || outcome.failure == FetchOutcome::Failure::Abandoned)
        return false;
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kRecordFetch, &stmt)) {
        DebugTrace("recordFetch Error::%s", sqlite3_errmsg(db));
        return false;
    }
    const QDateTime at = outcome.fetchedAt.isValid() ? outcome.fetchedAt : QDateTime::currentDateTimeUtc();
    bindText(stmt, 1, outcome.requestedURL);
    bindText(stmt, 2, textOrEmpty(outcome.finalURL));
    bindInt(stmt, 3, outcome.status);
    bindText(stmt, 4, FetchOutcome::failureName(outcome.failure));
    bindText(stmt, 5, textOrEmpty(outcome.failureText));
    sqlite3_bind_int64(stmt, 6, outcome.responseMs);
    bindInt(stmt, 7, outcome.redirectChain.size());
    bindText(stmt, 8, chainToJson(outcome.redirectChain));
    bindText(stmt, 9, at.toUTC().toString(Qt::ISODateWithMs));
    const bool done = step(stmt, project) == SQLITE_DONE;
    finish(stmt);
    return done;
}

FetchLogPtr FetchLog::getFetchLogWithURL(const QString& url, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetFetchLog, &stmt)) {
        DebugTrace("getFetchLogWithURL Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindText(stmt, 1, url);
    FetchLogPtr row;
    if (step(stmt, project) == SQLITE_ROW)
        row = fetchLogFromStatement(stmt, 0);
    finish(stmt);
    return row;
}

FetchLogPtr FetchLog::fetchLogFromStatement(sqlite3_stmt* statement, int first)
{
    const QDateTime at = QDateTime::fromString(columnText(statement, first + 7), Qt::ISODateWithMs).toUTC();
    return std::make_shared<FetchLog>(columnText(statement, first), columnText(statement, first + 1),
                                      sqlite3_column_int64(statement, first + 2), columnText(statement, first + 3),
                                      columnText(statement, first + 4), sqlite3_column_int64(statement, first + 5),
                                      chainFromJson(columnText(statement, first + 6)), at);
}

QString FetchLog::columnsOfF()
{
    return QStringLiteral("F.url,F.final_url,F.status,F.failure,F.failure_text,F.response_ms,F.redirect_chain,F.fetched_at");
}

QString FetchLog::tableOrEmpty(sqlite3* db)
{
    if (hasTable(db))
        return QStringLiteral("FetchLog");
    return QStringLiteral("(select '' as url,'' as final_url,0 as status,'' as failure,'' as failure_text,"
                          "-1 as response_ms,0 as redirect_count,'[]' as redirect_chain,'' as fetched_at where 0)");
}

QString FetchLog::brokenCondition()
{
    return QStringLiteral("(F.status >= 400 or F.failure in (%1))").arg(QLatin1String(kBrokenFailures));
}

qint64 FetchLog::countBrokenLinks(const ProjectPtr& project)
{
    // From the broken targets to their links, not from every link to its target's log.
    return countOf(QStringLiteral("select count(*) from FetchLog F cross join Page T on T.url = F.url "
                                  "cross join Links L on L.idt_page = T.idt where ")
                       + brokenCondition(),
                   "countBrokenLinks", project);
}

qint64 FetchLog::countBrokenTargets(const ProjectPtr& project)
{
    return countOf(QStringLiteral("select count(*) from FetchLog F where ") + brokenCondition()
                       + QStringLiteral(" and exists (select 1 from Page T join Links L on L.idt_page = T.idt "
                                        "where T.url = F.url)"),
                   "countBrokenTargets", project);
}

bool FetchLog::isBroken() const
{
    static const QStringList failures{QStringLiteral("timeout"), QStringLiteral("refused"), QStringLiteral("dns"),
                                      QStringLiteral("too-many-redirects"), QStringLiteral("bad-url"),
                                      QStringLiteral("error")};
    return status_ >= 400 || failures.contains(failure_);
}

QString FetchLog::statusText() const
{
    if (status_ > 0)
        return QString::number(status_);
    return failure_.isEmpty() ? QStringLiteral("-") : failure_;
}

QString FetchLog::chainToJson(const QList<FetchHop>& chain)
{
    QJsonArray hops;
    for (const auto& hop : chain)
        hops.append(QJsonObject{{QStringLiteral("url"), hop.url}, {QStringLiteral("status"), hop.status}});
    return QString::fromUtf8(QJsonDocument(hops).toJson(QJsonDocument::Compact));
}

QList<FetchHop> FetchLog::chainFromJson(const QString& json)
{
    QList<FetchHop> chain;
    const QJsonArray hops = QJsonDocument::fromJson(json.toUtf8()).array();
    for (const auto& value : hops) {
        const QJsonObject hop = value.toObject();
        chain.append(FetchHop{hop.value(QStringLiteral("url")).toString(), hop.value(QStringLiteral("status")).toInt()});
    }
    return chain;
}
