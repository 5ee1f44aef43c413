#include "store/DatabaseErrorLog.h"

#include <sqlite3.h>

#include <atomic>

namespace {
std::atomic<quint64> g_failures{0};
std::atomic<int> g_lastCode{SQLITE_OK};

// The errors that mean the file could not be written or read as it should; a constraint
// that refuses a row, a statement that does not prepare, or a lock that another process
// held too long, is the caller's own business.
bool isStorageFailure(int code)
{
    switch (code & 0xff) {
    case SQLITE_FULL:
    case SQLITE_IOERR:
    case SQLITE_CANTOPEN:
    case SQLITE_READONLY:
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_NOMEM:
    case SQLITE_PROTOCOL:
    case SQLITE_NOLFS:
        return true;
    default:
        return false;
    }
}

// Called by the library on any thread; it must not call back into the library.
void logged(void*, int code, const char* message)
{
    (void)message;  // names the statement or the source line; the code's own text reads better
    if (!isStorageFailure(code))
        return;
    g_lastCode.store(code);
    g_failures.fetch_add(1);
}
} // namespace

bool DatabaseErrorLog::install()
{
    static const bool installed = sqlite3_config(SQLITE_CONFIG_LOG, &logged, nullptr) == SQLITE_OK;
    return installed;
}

quint64 DatabaseErrorLog::failureCount()
{
    return g_failures.load();
}

QString DatabaseErrorLog::lastFailure()
{
    const int code = g_lastCode.load();
    return code == SQLITE_OK ? QString() : QString::fromUtf8(sqlite3_errstr(code));
}
