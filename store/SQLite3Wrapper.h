#pragma once

struct sqlite3;

// Carries a project's open database handle. It does not own the handle: whoever opened it
// closes it (the project, through its manager).
class SQLite3Wrapper {
public:
    explicit SQLite3Wrapper(sqlite3* pointer) : database_(pointer) {}
    static SQLite3Wrapper* initWihSQLite3Pointer(sqlite3* pointer) { return new SQLite3Wrapper(pointer); }

    sqlite3* database() const { return database_; }
    void setDatabase(sqlite3* pointer) { database_ = pointer; }

private:
    sqlite3* database_ = nullptr;
};
