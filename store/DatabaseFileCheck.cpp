#include "store/DatabaseFileCheck.h"

#include <QStringList>

#include <sqlite3.h>

namespace {
constexpr int kProblemsShown = 3;
}

bool DatabaseFileCheck::quickCheck(sqlite3* db, QString* problem)
{
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, "pragma quick_check", -1, &stmt, nullptr) != SQLITE_OK) {
        *problem = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_finalize(stmt);
        return false;
    }
    // One row "ok", or one row per problem.
    QStringList problems;
    bool sound = false;
    int rc;
    while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        QString line = text ? QString::fromUtf8(text) : QString();
        line.remove(QStringLiteral("*** in database main ***"));
        line = line.simplified();
        if (line == QLatin1String("ok")) {
            sound = true;
            continue;
        }
        if (problems.size() < kProblemsShown)
            problems.append(line);
    }
    if (rc != SQLITE_DONE) {
        if (problems.isEmpty())
            problems.append(QString::fromUtf8(sqlite3_errmsg(db)));
        sound = false;
    }
    sqlite3_finalize(stmt);
    if (!sound)
        *problem = problems.isEmpty() ? QStringLiteral("the check found problems") : problems.join(QStringLiteral("; "));
    return sound;
}

bool DatabaseFileCheck::hasCrawlTables(sqlite3* db, QString* why)
{
    sqlite3_stmt* stmt = nullptr;
    const char* sql = "select count(*) from sqlite_master where type='table' and name in "
                      "('Page','Links','DownloaderQueue','LinkHeaders')";
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) != SQLITE_OK) {
        *why = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_finalize(stmt);
        return false;
    }
    int tables = 0;
    if (sqlite3_step(stmt) == SQLITE_ROW)
        tables = sqlite3_column_int(stmt, 0);
    else
        *why = QString::fromUtf8(sqlite3_errmsg(db));
    sqlite3_finalize(stmt);
    if (tables != 4 && why->isEmpty())
        *why = QStringLiteral("some of its tables are missing");
    return tables == 4;
}

bool DatabaseFileCheck::isDamage(int resultCode)
{
    const int primary = resultCode & 0xff;
    return primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB;
}

bool DatabaseFileCheck::isBusy(int resultCode)
{
    const int primary = resultCode & 0xff;
    return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}
