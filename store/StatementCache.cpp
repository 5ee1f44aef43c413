#include "store/StatementCache.h"

#include <sqlite3.h>

#include <mutex>
#include <string>
#include <unordered_map>

namespace StatementCache {

namespace {
// Enough for every fixed statement of the record classes; texts built per call (the 404
// lists) stop being kept once it is reached.
constexpr size_t kMaximumPerConnection = 96;

struct Cache {
    std::mutex mutex;
    std::unordered_map<sqlite3*, std::unordered_map<std::string, sqlite3_stmt*>> statements;
};

Cache& cache()
{
    static Cache c;
    return c;
}
} // namespace

sqlite3_stmt* take(sqlite3* db, const char* sql)
{
    if (!db || !sql)
        return nullptr;
    Cache& c = cache();
    std::lock_guard lock(c.mutex);
    const auto connection = c.statements.find(db);
    if (connection == c.statements.end())
        return nullptr;
    const auto found = connection->second.find(sql);
    if (found == connection->second.end())
        return nullptr;
    sqlite3_stmt* stmt = found->second;
    connection->second.erase(found);
    return stmt;
}

void giveBack(sqlite3_stmt* stmt)
{
    if (!stmt)
        return;
    sqlite3_reset(stmt);
    sqlite3_clear_bindings(stmt);
    sqlite3* db = sqlite3_db_handle(stmt);
    const char* sql = sqlite3_sql(stmt);
    if (db && sql) {
        Cache& c = cache();
        std::lock_guard lock(c.mutex);
        auto& kept = c.statements[db];
        if (kept.size() < kMaximumPerConnection && kept.emplace(sql, stmt).second)
            return;
    }
    sqlite3_finalize(stmt);
}

void release(sqlite3* db)
{
    if (!db)
        return;
    std::unordered_map<std::string, sqlite3_stmt*> kept;
    {
        Cache& c = cache();
        std::lock_guard lock(c.mutex);
        const auto connection = c.statements.find(db);
        if (connection == c.statements.end())
            return;
        kept.swap(connection->second);
        c.statements.erase(connection);
    }
    for (const auto& entry : kept)
        sqlite3_finalize(entry.second);
}

int count(sqlite3* db)
{
    Cache& c = cache();
    std::lock_guard lock(c.mutex);
    const auto connection = c.statements.find(db);
    return connection == c.statements.end() ? 0 : int(connection->second.size());
}

} // namespace StatementCache
