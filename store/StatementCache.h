#pragma once

struct sqlite3;
struct sqlite3_stmt;

// Prepared statements kept per connection and handed out again for the same SQL text, so
// that a crawl prepares each of its statements once instead of once a use. A statement in
// use is not in the cache: a second user of the same text meanwhile gets one of its own.
// The cache must let go of a connection's statements before that connection closes.
namespace StatementCache {
// A cached statement for this text on this connection, reset and without bindings; null
// when there is none.
sqlite3_stmt* take(sqlite3* db, const char* sql);
// Keeps the statement for its next use (reset, bindings cleared), or finalizes it when the
// cache has one for that text already or is full.
void giveBack(sqlite3_stmt* stmt);
// Finalizes every statement kept for the connection.
void release(sqlite3* db);
// How many statements are kept for the connection.
int count(sqlite3* db);
} // namespace StatementCache
