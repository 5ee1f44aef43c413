#include "store/WebStore.h"

#include "base/DebugTrace.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <sqlite3.h>

using namespace RecordStatement;

namespace {

const char* const kSchema[] = {
    "create table WebSettings (key text primary key not null, value text not null)",
    "create table WebTarget (idt integer primary key autoincrement, url text not null unique, kind text not null, "
    "scheme text not null, verdict text not null, rule text not null default '', status integer not null default 0, "
    "failure text not null default '', content_type text not null default '', final_url text not null default '', "
    "redirect_to integer not null default 0, fragment_ids text)",
    "create index WEBTARGET_VERDICT on WebTarget(verdict, kind)",
    "create table WebLink (idt_source integer not null, idt_target integer not null, tag text not null, "
    "attribute text not null, anchor text not null, fragment text, navigational integer not null)",
    // By target only: every report starts from the targets. An index by source would cost
    // each of the many link rows a second index entry for no query.
    "create index WEBLINK_TARGET on WebLink(idt_target)",
    "insert into WebSettings(key, value) values('rules', 'web')",
};

bool execAll(sqlite3* db, const QList<const char*>& statements)
{
    for (const char* sql : statements) {
        char* message = nullptr;
        if (sqlite3_exec(db, sql, nullptr, nullptr, &message) != SQLITE_OK) {
            DebugTrace("WebStore Error::%s (%s)", message ? message : "", sql);
            sqlite3_free(message);
            return false;
        }
    }
    return true;
}

void bindId(sqlite3_stmt* stmt, int index, qint64 value)
{
    sqlite3_bind_int64(stmt, index, value);
}

// One write: prepared once, bound by `bind`, stepped.
template <typename Bind>
bool write(const ProjectPtr& project, const char* sql, const char* operation, Bind bind)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, sql, &stmt)) {
        DebugTrace("%s Error::%s", operation, sqlite3_errmsg(db));
        return false;
    }
    bind(stmt);
    const bool done = step(stmt, project) == SQLITE_DONE;
    finish(stmt);
    return done;
}

QString textOrEmpty(const QString& text)
{
    return text.isNull() ? QStringLiteral("") : text;
}

} // namespace

bool WebStore::hasTables(sqlite3* db)
{
    return RecordStatement::hasTable(db, "WebSettings");
}

bool WebStore::createTables(sqlite3* db)
{
    if (!db)
        return false;
    if (hasTables(db))
        return true;
    if (sqlite3_exec(db, "begin", nullptr, nullptr, nullptr) != SQLITE_OK)
        return false;
    QList<const char*> statements;
    for (const char* sql : kSchema)
        statements.append(sql);
    if (!execAll(db, statements) || sqlite3_exec(db, "commit", nullptr, nullptr, nullptr) != SQLITE_OK) {
        sqlite3_exec(db, "rollback", nullptr, nullptr, nullptr);
        return false;
    }
    return true;
}

void WebStore::clear(sqlite3* db)
{
    if (!hasTables(db))
        return;
    execAll(db, {"delete from WebLink", "delete from WebTarget", "delete from LinkHeaders"});
}

QHash<QString, WebStore::Target> WebStore::loadTargets(const ProjectPtr& project)
{
    QHash<QString, Target> targets;
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, "select idt, url, kind, verdict from WebTarget", &stmt)) {
        DebugTrace("loadTargets Error::%s", sqlite3_errmsg(db));
        return targets;
    }
    while (nextRow(stmt, project))
        targets.insert(columnText(stmt, 1),
                       Target{sqlite3_column_int64(stmt, 0), columnText(stmt, 2), columnText(stmt, 3)});
    finish(stmt);
    return targets;
}

qint64 WebStore::insertTarget(const ProjectPtr& project, const QString& url, const QString& kind,
                              const QString& scheme, const QString& verdict, const QString& rule)
{
    const bool done = write(project,
                            "insert into WebTarget(url, kind, scheme, verdict, rule) values(?,?,?,?,?)",
                            "insertTarget", [&](sqlite3_stmt* stmt) {
                                bindText(stmt, 1, url);
                                bindText(stmt, 2, kind);
                                bindText(stmt, 3, textOrEmpty(scheme));
                                bindText(stmt, 4, verdict);
                                bindText(stmt, 5, textOrEmpty(rule));
                            });
    return done ? sqlite3_last_insert_rowid(databaseOf(project)) : 0;
}

bool WebStore::setKind(const ProjectPtr& project, qint64 idt, const QString& kind)
{
    return write(project, "update WebTarget set kind = ? where idt = ?", "setKind", [&](sqlite3_stmt* stmt) {
        bindText(stmt, 1, kind);
        bindId(stmt, 2, idt);
    });
}

bool WebStore::setVerdict(const ProjectPtr& project, qint64 idt, const QString& verdict, const QString& rule)
{
    return write(project, "update WebTarget set verdict = ?, rule = ? where idt = ?", "setVerdict",
                 [&](sqlite3_stmt* stmt) {
                     bindText(stmt, 1, verdict);
                     bindText(stmt, 2, textOrEmpty(rule));
                     bindId(stmt, 3, idt);
                 });
}

bool WebStore::recordAnswer(const ProjectPtr& project, qint64 idt, int status, const QString& failure,
                            const QString& verdict, const QString& contentType, const QString& finalUrl,
                            qint64 redirectTo)
{
    return write(project,
                 "update WebTarget set status = ?, failure = ?, verdict = ?, content_type = ?, final_url = ?, "
                 "redirect_to = ? where idt = ?",
                 "recordAnswer", [&](sqlite3_stmt* stmt) {
                     bindInt(stmt, 1, status);
                     bindText(stmt, 2, textOrEmpty(failure));
                     bindText(stmt, 3, verdict);
                     bindText(stmt, 4, textOrEmpty(contentType));
                     bindText(stmt, 5, textOrEmpty(finalUrl));
                     bindId(stmt, 6, redirectTo);
                     bindId(stmt, 7, idt);
                 });
}

bool WebStore::setFragmentIds(const ProjectPtr& project, qint64 idt, const QStringList& ids)
{
    // One per line: an id cannot hold a line break that a fragment could name.
    QStringList kept;
    for (const auto& id : ids)
        if (!id.contains(QLatin1Char('\n')))
            kept.append(id);
    return write(project, "update WebTarget set fragment_ids = ? where idt = ?", "setFragmentIds",
                 [&](sqlite3_stmt* stmt) {
                     bindText(stmt, 1, textOrEmpty(kept.join(QLatin1Char('\n'))));
                     bindId(stmt, 2, idt);
                 });
}

bool WebStore::insertLink(const ProjectPtr& project, qint64 sourcePage, qint64 target, const QString& tag,
                          const QString& attribute, const QString& anchor, const QString& fragment,
                          bool navigational)
{
    return write(project,
                 "insert into WebLink(idt_source, idt_target, tag, attribute, anchor, fragment, navigational) "
                 "values(?,?,?,?,?,?,?)",
                 "insertLink", [&](sqlite3_stmt* stmt) {
                     bindId(stmt, 1, sourcePage);
                     bindId(stmt, 2, target);
                     bindText(stmt, 3, tag);
                     bindText(stmt, 4, textOrEmpty(attribute));
                     bindText(stmt, 5, textOrEmpty(anchor));
                     bindText(stmt, 6, fragment);
                     bindInt(stmt, 7, navigational ? 1 : 0);
                 });
}

qint64 WebStore::countPendingChecks(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, "select count(*) from WebTarget where verdict = 'pending' and kind in ('resource','external')",
                 &stmt)) {
        DebugTrace("countPendingChecks Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    qint64 count = 0;
    if (step(stmt, project) == SQLITE_ROW)
        count = sqlite3_column_int64(stmt, 0);
    finish(stmt);
    return count;
}

QList<WebStore::PendingCheck> WebStore::pendingChecks(const ProjectPtr& project, qint64 afterIdt, int limit)
{
    QList<PendingCheck> checks;
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db,
                 "select idt, url, kind from WebTarget where verdict = 'pending' and kind in ('resource','external') "
                 "and idt > ? order by idt limit ?",
                 &stmt)) {
        DebugTrace("pendingChecks Error::%s", sqlite3_errmsg(db));
        return checks;
    }
    bindId(stmt, 1, afterIdt);
    bindInt(stmt, 2, limit);
    while (nextRow(stmt, project))
        checks.append(PendingCheck{sqlite3_column_int64(stmt, 0), columnText(stmt, 1), columnText(stmt, 2)});
    finish(stmt);
    return checks;
}

QList<WebStore::QueueEntry> WebStore::waitingEntries(const ProjectPtr& project, qint64 afterIdt, int limit)
{
    QList<QueueEntry> entries;
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db,
                 "select idt, url, path, document_name, depth from DownloaderQueue where perform_done = 0 and idt > ? "
                 "order by idt limit ?",
                 &stmt)) {
        DebugTrace("waitingEntries Error::%s", sqlite3_errmsg(db));
        return entries;
    }
    bindId(stmt, 1, afterIdt);
    bindInt(stmt, 2, limit);
    while (nextRow(stmt, project))
        entries.append(QueueEntry{sqlite3_column_int64(stmt, 0), columnText(stmt, 1), columnText(stmt, 2),
                                  columnText(stmt, 3), qint32(sqlite3_column_int(stmt, 4))});
    finish(stmt);
    return entries;
}

bool WebStore::markEntryDone(const ProjectPtr& project, qint64 entryIdt)
{
    return write(project, "update DownloaderQueue set perform_done = 1 where idt = ?", "markEntryDone",
                 [&](sqlite3_stmt* stmt) { bindId(stmt, 1, entryIdt); });
}

bool WebStore::settle(const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    if (!db)
        return false;
    const bool grouped = sqlite3_get_autocommit(db) && sqlite3_exec(db, "begin", nullptr, nullptr, nullptr) == SQLITE_OK;
    // A chain of redirects is at most 20 long: each pass carries verdicts one step back.
    bool ok = true;
    for (int pass = 0; pass < 21 && ok; ++pass) {
        ok = execAll(db, {"update WebTarget set verdict = (select T.verdict from WebTarget T where T.idt = "
                          "WebTarget.redirect_to) where redirect_to <> 0 and exists (select 1 from WebTarget T where "
                          "T.idt = WebTarget.redirect_to and T.verdict not in ('redirect', 'pending') and T.verdict <> "
                          "WebTarget.verdict)"});
        if (sqlite3_changes(db) == 0)
            break;
    }
    ok = ok
         && execAll(db, {
                            "delete from Links",
                            "insert into Links(idt_page, idt_source, anchor, counter) select P.idt, L.idt_source, "
                            "L.anchor, L.rowid from WebLink L join WebTarget T on T.idt = L.idt_target join Page P on "
                            "P.url = T.url where L.navigational = 1 and exists (select 1 from Page S where S.idt = "
                            "L.idt_source)",
                            "update Page set in_link_count = 0, out_link_count = 0",
                            "update Page set in_link_count = C.n from (select idt_page, count(*) as n from Links "
                            "group by idt_page) as C where C.idt_page = Page.idt",
                            "update Page set out_link_count = C.n from (select idt_source, count(*) as n from Links "
                            "group by idt_source) as C where C.idt_source = Page.idt",
                        });
    if (grouped) {
        if (ok && sqlite3_exec(db, "commit", nullptr, nullptr, nullptr) == SQLITE_OK)
            return true;
        sqlite3_exec(db, "rollback", nullptr, nullptr, nullptr);
        return false;
    }
    return ok;
}

QString WebStore::setting(sqlite3* db, const QString& key)
{
    sqlite3_stmt* stmt = nullptr;
    if (!db || sqlite3_prepare_v2(db, "select value from WebSettings where key = ?", -1, &stmt, nullptr) != SQLITE_OK) {
        sqlite3_finalize(stmt);
        return QString();
    }
    const QByteArray k = key.toUtf8();
    sqlite3_bind_text(stmt, 1, k.constData(), -1, SQLITE_TRANSIENT);
    QString value;
    if (sqlite3_step(stmt) == SQLITE_ROW)
        value = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    return value;
}

bool WebStore::setSetting(sqlite3* db, const QString& key, const QString& value)
{
    sqlite3_stmt* stmt = nullptr;
    if (!db
        || sqlite3_prepare_v2(db, "insert or replace into WebSettings(key, value) values(?,?)", -1, &stmt, nullptr)
               != SQLITE_OK) {
        sqlite3_finalize(stmt);
        return false;
    }
    const QByteArray k = key.toUtf8(), v = value.toUtf8();
    sqlite3_bind_text(stmt, 1, k.constData(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(stmt, 2, v.constData(), -1, SQLITE_TRANSIENT);
    const bool done = sqlite3_step(stmt) == SQLITE_DONE;
    sqlite3_finalize(stmt);
    return done;
}
