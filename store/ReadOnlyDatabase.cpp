#include "store/ReadOnlyDatabase.h"

#include "base/DebugTrace.h"
#include "store/FetchLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QUrl>

#include <sqlite3.h>

#include <memory>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

// The library's own lock bytes (unix VFS): a read lock on its shared range is what a reading
// connection holds, and keeps a writer from taking the exclusive lock a checkpoint needs.
constexpr off_t kPendingByte = 0x40000000;
constexpr off_t kSharedFirst = kPendingByte + 2;
constexpr off_t kSharedSize = 510;

// Copies read instead of the originals live as long as the process (a command's run).
std::vector<std::unique_ptr<QTemporaryDir>>& copies()
{
    static std::vector<std::unique_ptr<QTemporaryDir>> all;
    return all;
}

bool exists(const QString& path)
{
    return QFileInfo::exists(path);
}

// Holds a shared lock on the file for as long as the process runs; false when a writer
// holds it exclusively.
bool holdSharedLock(const QString& path)
{
    const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct flock lock {};
    lock.l_type = F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = kSharedFirst;
    lock.l_len = kSharedSize;
    if (::fcntl(fd, F_SETLK, &lock) != 0) {
        ::close(fd);
        return false;
    }
    // Kept open on purpose: closing it would drop the lock.
    return true;
}

sqlite3* openUri(const QString& path, const char* parameters)
{
    const QByteArray uri = QUrl::fromLocalFile(path).toEncoded() + parameters;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(uri.constData(), &db, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI | SQLITE_OPEN_FULLMUTEX, nullptr)
        != SQLITE_OK) {
        DebugTrace("ReadOnlyDatabase open Error::%s", db ? sqlite3_errmsg(db) : "out of memory");
        sqlite3_close(db);
        return nullptr;
    }
    return db;
}

// Reads a copy of the database and of the files beside it; the copy's own journal or log is
// replayed there.
sqlite3* openCopy(const QString& path)
{
    auto directory = std::make_unique<QTemporaryDir>();
    if (!directory->isValid())
        return nullptr;
    const QString copy = directory->filePath(QStringLiteral("copy.sqlite"));
    if (!QFile::copy(path, copy))
        return nullptr;
    for (const char* suffix : {"-wal", "-journal"}) {
        const QString beside = path + QLatin1String(suffix);
        if (exists(beside) && !QFile::copy(beside, copy + QLatin1String(suffix)))
            return nullptr;
    }
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(copy).constData(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX,
                        nullptr)
        != SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    copies().push_back(std::move(directory));
    return db;
}

void addEmptyFetchLogWhenMissing(sqlite3* db)
{
    if (FetchLog::hasTable(db))
        return;
    sqlite3_exec(db, "PRAGMA temp_store=MEMORY", nullptr, nullptr, nullptr);
    QByteArray statement(FetchLog::createTableStatement());
    statement.replace("create table FetchLog", "create temp table FetchLog");
    if (sqlite3_exec(db, statement.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        DebugTrace("addEmptyFetchLogWhenMissing Error::%s", sqlite3_errmsg(db));
}

} // namespace

sqlite3* ReadOnlyDatabase::open(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists() || info.size() == 0)
        return nullptr;
    const bool wal = exists(path + QStringLiteral("-wal"));
    const bool shm = exists(path + QStringLiteral("-shm"));
    const bool journal = exists(path + QStringLiteral("-journal"));
    sqlite3* db = nullptr;
    if (wal && shm && !journal)
        db = openUri(path, "?mode=ro");
    else if (!wal && !shm && !journal && holdSharedLock(path))
        db = openUri(path, "?immutable=1");
    else
        db = openCopy(path);
    if (!db)
        return nullptr;
    // Another quillmere crawling the same project holds the log for the length of a commit.
    sqlite3_busy_timeout(db, 10000);
    addEmptyFetchLogWhenMissing(db);
    return db;
}
