#pragma once

#include <QString>

struct sqlite3;

// Opens a crawl database for a command that only reads it, so that reading leaves every file
// beside it as it was: no journal mode set, no table added, no log checkpointed, no -wal or
// -shm created, no empty file turned into a database.
//
// - With a -wal beside it (a crawl runs, or one was killed) and its -shm, a read-only
//   connection shares them and sees every committed row.
// - With neither, the file holds everything: it is read as immutable (nothing created),
//   under a shared lock that keeps a crawl starting meanwhile from checkpointing into it.
// - Otherwise (a -wal without its -shm, as copied, or a rollback journal left by a crash)
//   reading needs files written: a copy of the set is read instead.
//
// A database made before the fetch log gets an empty temporary one, seen by this connection
// only. Answers null when the file is missing, empty or cannot be opened.
class ReadOnlyDatabase {
public:
    static sqlite3* open(const QString& path);
};
