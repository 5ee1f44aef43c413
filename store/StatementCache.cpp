#include "store/StatementCache.h"

#include <sqlite3.h>

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace StatementCache {

namespace {
// Enough for every fixed statement of the record classes; texts built per call (the 404
// lists) stop being kept once it is reached.
constexpr size_t kMaximumPerConnection = 96;

// Looked up by the statement's text without copying it: a crawl takes and gives back a
// statement several times a link.
struct TextHash {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

// One slot per text once seen; null while its statement is in use (or finalized as a
// second one of the same text).
using Slots = std::unordered_map<std::string, sqlite3_stmt*, TextHash, std::equal_to<>>;

struct Cache {
    std::mutex mutex;
    std::unordered_map<sqlite3*, Slots> statements;
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
    const auto found = connection->second.find(std::string_view(sql));
    if (found == connection->second.end())
        return nullptr;
    return std::exchange(found->second, nullptr);
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
        Slots& slots = c.statements[db];
        const auto found = slots.find(std::string_view(sql));
        if (found != slots.end()) {
            if (!found->second) {
                found->second = stmt;
                return;
            }
        } else if (slots.size() < kMaximumPerConnection) {
            slots.emplace(std::string(sql), stmt);
            return;
        }
    }
    sqlite3_finalize(stmt);
}

void release(sqlite3* db)
{
    if (!db)
        return;
    Slots kept;
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
        if (entry.second)
            sqlite3_finalize(entry.second);
}

int count(sqlite3* db)
{
    Cache& c = cache();
    std::lock_guard lock(c.mutex);
    const auto connection = c.statements.find(db);
    if (connection == c.statements.end())
        return 0;
    int kept = 0;
    for (const auto& entry : connection->second)
        kept += entry.second ? 1 : 0;
    return kept;
}

} // namespace StatementCache
