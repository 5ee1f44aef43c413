#pragma once

#include <QString>

struct sqlite3;

// Quick checks of an SQLite file before a command trusts it: whether its pages are sound and
// whether it holds the tables a crawl needs. Reads only.
class DatabaseFileCheck {
public:
    // The library's page check (no index contents): about a millisecond per megabyte. False,
    // with the first problems found, when the file is damaged or cannot be read.
    static bool quickCheck(sqlite3* db, QString* problem);

    // The four tables of a crawl database; a file that lacks one was not made by us, or is
    // damaged.
    static bool hasCrawlTables(sqlite3* db, QString* why);

    // Whether a result code says the file itself is damaged (rather than busy, full or gone).
    static bool isDamage(int resultCode);
    // Whether it says another connection held the file too long.
    static bool isBusy(int resultCode);
};
