#pragma once

#include <QFile>
#include <QString>
#include <QStringList>

#include <sqlite3.h>

// What a crawl found, read straight from a project's crawl database, in a form that two
// crawls of one site can be compared by: pages and links named by URL, sorted.
struct CrawlDatabaseSnapshot {
    QStringList pages;  // "url | title | depth | in_link_count | noindex nofollow canonical"
    QStringList links;  // "source url -> target url | anchor | counter"
    qint64 waiting = -1;
    qint64 done = -1;
    bool readable = false;

    // Read-write, so that a journal left by a killed process is rolled back first.
    static CrawlDatabaseSnapshot read(const QString& file)
    {
        CrawlDatabaseSnapshot snapshot;
        if (!QFile::exists(file))
            return snapshot;
        sqlite3* db = nullptr;
        if (sqlite3_open_v2(QFile::encodeName(file).constData(), &db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK) {
            sqlite3_close(db);
            return snapshot;
        }
        sqlite3_busy_timeout(db, 10000);
        bool ok = rows(db,
                       "select url || ' | ' || title || ' | ' || depth || ' | ' || in_link_count || ' | ' || "
                       "is_no_index || is_no_follow || is_canonical from Page",
                       &snapshot.pages)
                  && rows(db,
                          "select S.url || ' -> ' || T.url || ' | ' || coalesce(L.anchor, '(null)') || ' | ' || L.counter "
                          "from Links L left join Page S on S.idt = L.idt_source left join Page T on T.idt = L.idt_page",
                          &snapshot.links);
        QStringList counts;
        ok = ok && rows(db, "select sum(perform_done = 0) || ' ' || sum(perform_done = 1) from DownloaderQueue", &counts);
        sqlite3_close(db);
        if (!ok)
            return snapshot;
        const QStringList parts = counts.value(0).split(QLatin1Char(' '));
        snapshot.waiting = parts.value(0).toLongLong();
        snapshot.done = parts.value(1).toLongLong();
        snapshot.pages.sort();
        snapshot.links.sort();
        snapshot.readable = true;
        return snapshot;
    }

private:
    static bool rows(sqlite3* db, const char* sql, QStringList* out)
    {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) != SQLITE_OK)
            return false;
        int rc;
        while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
            out->append(text ? QString::fromUtf8(text) : QStringLiteral("(null)"));
        }
        sqlite3_finalize(stmt);
        return rc == SQLITE_DONE;
    }
};
