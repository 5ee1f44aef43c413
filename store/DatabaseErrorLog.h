#pragma once

#include <QString>

// Counts the writes the SQLite library could not make (disk full, read-only file or
// directory, I/O error, damaged file, ...), on any connection of the process, as the library
// reports them through its error log. A failed statement is otherwise easy to miss: the
// record operations answer nil or nothing, and a transaction would commit what was left.
class DatabaseErrorLog {
public:
    // Before the library's first use; later calls change nothing. Answers whether the log
    // is in place.
    static bool install();
    static quint64 failureCount();
    // The library's text for the last failure counted, such as "database or disk is full"
    // ("" before the first).
    static QString lastFailure();
};
