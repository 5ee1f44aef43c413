#pragma once

#include <QString>

#include <optional>

struct sqlite3;

// The page records a crawl looks up by URL, kept in memory while it runs. A crawl asks for
// the record of every link's target, several times a link; each answer here is the one the
// database gives at that moment: every write the record class makes to a kept row is made to
// the copy too, a new or removed row drops the answer for its URL, a write of many rows, a
// failed write or a rolled-back transaction drops them all. Kept per connection, only for a
// connection a crawl has switched it on for.
// Two more questions a crawl asks per link are kept the same way: the first LinkHeaders row
// of a URL (a new row for the URL drops the answer), and whether a URL is in the downloader
// queue (a new entry makes it so). A URL holding a zero character is always left to the
// database, which would compare only what comes before it.
namespace PageRowCache {

// One Page row as the database returns it.
struct Row {
    qint64 idt = 0;
    QString path;
    QString page;
    QString title;
    QString url;
    qint64 isNoIndex = 0;
    qint64 isNoFollow = 0;
    qint64 isCanonical = 0;
    qint64 inLinkCount = 0;
    qint64 outLinkCount = 0;
    qint64 depth = 0;
    double weight = 0;
};

// The first LinkHeaders row of a URL, as the database returns it.
struct HeadersRow {
    QString url;
    QString contentType;
    std::optional<qint64> contentLength;
    std::optional<qint64> downloadedLength;
};

enum class Column { Title, InLinkCount, OutLinkCount, IsNoIndex, IsNoFollow, IsCanonical };

void enable(sqlite3* db);
void disable(sqlite3* db);
bool isEnabled(sqlite3* db);

// The answer kept for a URL (without its last slash): nullopt when none is kept, a null row
// (through *absent) when the database had none.
std::optional<Row> find(sqlite3* db, const QString& bareURL, bool* absent);
// Keeps the database's answer for the URL; null for no row.
void remember(sqlite3* db, const QString& bareURL, const Row* row);

// A write was made to the row with this identifier.
void setText(sqlite3* db, qint64 idt, Column column, const QString& storedText);
void setNumber(sqlite3* db, qint64 idt, Column column, qint64 storedValue);
void addToNumber(sqlite3* db, qint64 idt, Column column, qint64 delta);
// A row was added for this URL, or the row with this identifier was removed.
void forgetURL(sqlite3* db, const QString& bareURL);
void forgetIdentifier(sqlite3* db, qint64 idt);
// The LinkHeaders answer kept for a URL: nullopt when none is kept; else the row, or a
// null row (through *absent) when the database had none.
std::optional<HeadersRow> findHeaders(sqlite3* db, const QString& url, bool* absent);
void rememberHeaders(sqlite3* db, const QString& url, const HeadersRow* row);
// A LinkHeaders row was added for the URL.
void forgetHeaders(sqlite3* db, const QString& url);
// Whether the URL is in the downloader queue, when known.
std::optional<bool> findQueued(sqlite3* db, const QString& url);
void rememberQueued(sqlite3* db, const QString& url, bool queued);

// Drops every answer kept for the connection.
void clear(sqlite3* db);

// A text as the database gives it back once bound: cut at a zero character, and empty (not
// null) when nothing is left.
QString storedForm(const QString& text);

// Checking mode: every answer from memory is compared with the database's; for tests and
// for QUILLMERE_CHECK_PAGE_CACHE=1.
void setChecking(bool on);
bool isChecking();
// A difference is also told on standard error, with the URL and what was asked.
void noteChecked(bool same, const QString& url, const char* what = "page record");
qint64 answersFromMemory();
qint64 mismatches();

} // namespace PageRowCache
