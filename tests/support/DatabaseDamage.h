#pragma once
// Damages an SQLite file the way a bad disk sector or a torn copy would: garbage over whole
// pages past the file's first page, so that the header and the schema still read and the file
// opens, but every statement that reaches a damaged page fails.

#include <QFile>
#include <QList>
#include <QString>

#include <sqlite3.h>

namespace DatabaseDamage {

inline int pageSize(const QString& file)
{
    sqlite3* db = nullptr;
    int size = 0;
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, "pragma page_size", -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW)
            size = sqlite3_column_int(stmt, 0);
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return size;
}

// The pages of a table or an index, in file order: its leaves (the root alone for a one-page
// tree). Falls back on the root page when the library cannot list pages.
inline QList<int> pagesOf(const QString& file, const QString& name)
{
    QList<int> pages;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return pages;
    }
    const QByteArray utf8 = name.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, "select pageno from dbstat where name=? and pagetype='leaf' order by pageno", -1, &stmt,
                           nullptr) == SQLITE_OK) {
        sqlite3_bind_text(stmt, 1, utf8.constData(), -1, SQLITE_TRANSIENT);
        while (sqlite3_step(stmt) == SQLITE_ROW)
            pages.append(sqlite3_column_int(stmt, 0));
    }
    sqlite3_finalize(stmt);
    if (pages.isEmpty() && sqlite3_prepare_v2(db, "select rootpage from sqlite_master where name=?", -1, &stmt, nullptr) == SQLITE_OK) {
        sqlite3_bind_text(stmt, 1, utf8.constData(), -1, SQLITE_TRANSIENT);
        if (sqlite3_step(stmt) == SQLITE_ROW)
            pages.append(sqlite3_column_int(stmt, 0));
        sqlite3_finalize(stmt);
    }
    sqlite3_close(db);
    return pages;
}

// Garbage over page `number` (1 is the first page, which is left alone).
inline bool overwritePage(const QString& file, int number)
{
    const int size = pageSize(file);
    if (size <= 0 || number < 2)
        return false;
    QFile f(file);
    if (!f.open(QIODevice::ReadWrite) || !f.seek(qint64(size) * (number - 1)))
        return false;
    return f.write(QByteArray(size, 'x')) == size;
}

// Garbage over the middle page of a table or an index: the rows before it read, then the
// statement fails. Answers the page damaged, 0 when nothing was.
inline int damageMiddleOf(const QString& file, const QString& name)
{
    const QList<int> pages = pagesOf(file, name);
    if (pages.isEmpty())
        return 0;
    const int page = pages[pages.size() / 2];
    return overwritePage(file, page) ? page : 0;
}

inline QByteArray contents(const QString& file)
{
    QFile f(file);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace DatabaseDamage
