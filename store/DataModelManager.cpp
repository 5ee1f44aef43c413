#include "store/DataModelManager.h"

#include "store/ApplicationDelegate.h"
#include "store/DatabaseErrorLog.h"
#include "base/DebugTrace.h"
#include "store/FetchLog.h"
#include "store/ManagedObjectContext.h"
#include "store/ManagedObjectModel.h"
#include "store/PageRowCache.h"
#include "store/PersistentStoreCoordinator.h"
#include "store/StatementCache.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <sqlite3.h>

#include <cerrno>
#include <cstring>

namespace {
QString g_dataDirectoryOverride;
bool g_readOnly = false;

const char* const kSchema[] = {
    "create table Page (idt integer primary key autoincrement,path text not null, page text not null, title text not null, url text not null,is_no_index integer,is_no_follow integer,is_canonical integer,in_link_count integer,out_link_count integer,depth integer,weight real)",
    "CREATE INDEX PAGE_URL_IDX on Page(url)",
    "create table Links(idt_page integer, idt_source integer, anchor text,counter integer, CONSTRAINT FK_SOURCES_REL1 FOREIGN KEY(idt_page) REFERENCES Page(idt), CONSTRAINT FK_SOURCES_REL2 FOREIGN KEY(idt_source) REFERENCES Page(idt) )",
    "CREATE INDEX SOURCES_IDX on Links(idt_page)",
    "create table DownloaderQueue (idt integer primary key autoincrement,url text not null,path text not null,document_name text not null,depth integer,perform_done integer)",
    "CREATE INDEX DOWNLOADER_QUEUE_DONE on DownloaderQueue(perform_done)",
    "CREATE INDEX DOWNLOADER_QUEUE_URL on DownloaderQueue(url)",
    "create table LinkHeaders (url text not null, content_type text not null, content_length integer,downloaded_length integer)",
    "CREATE INDEX HEADERS_IDX on LinkHeaders(url)",
};

QString appendComponent(const QString& directory, const QString& component)
{
    if (directory.endsWith(QLatin1Char('/')))
        return directory + component;
    return directory + QLatin1Char('/') + component;
}

// Another quillmere reading or crawling the same project holds the file's lock for the
// length of one commit: wait for it rather than fail (a failed step in a list query would
// otherwise be read as a row).
void waitWhileBusy(sqlite3* db)
{
    sqlite3_busy_timeout(db, 10000);
}

// A write-ahead log: a commit appends to the log and syncs it only at checkpoints, readers
// in other processes (show, pages) go on during a crawl, and a crash loses at most the
// transactions since the last sync, never the database. The mode stays with the file.
void useWriteAheadLog(sqlite3* db)
{
    sqlite3_exec(db, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    sqlite3_exec(db, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
    // The indexes a crawl looks up for every link stay in memory on a large site instead of
    // being read again from the file (16 MB at most).
    sqlite3_exec(db, "PRAGMA cache_size=-16384", nullptr, nullptr, nullptr);
    // Fewer, larger checkpoints: a page updated again and again (a page's links-received
    // count) is copied into the database once per checkpoint, not once per 4 MB of log.
    sqlite3_exec(db, "PRAGMA wal_autocheckpoint=8192", nullptr, nullptr, nullptr);
}

bool removePath(const QString& path)
{
    QFileInfo info(path);
    if (info.isDir() && !info.isSymLink())
        return QDir(path).removeRecursively();
    return QFile::remove(path);
}
} // namespace

DataModelManager::DataModelManager(ApplicationDelegate* appDelegate) : appDelegate_(appDelegate)
{
    // Before the library's first use: every connection is serialized anyway, and memory
    // statistics would add a global lock to each of its allocations.
    static const bool configured = [] {
        sqlite3_config(SQLITE_CONFIG_SERIALIZED);
        sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
        DatabaseErrorLog::install();  // lets a crawl see the writes that failed
        return true;
    }();
    (void)configured;
    // The log folder: "Logs" in the application files directory, created on the spot.
    defaultLogFolder_ = appendComponent(applicationFilesDirectory(), QStringLiteral("Logs"));
    if (!g_readOnly)
        QDir().mkpath(defaultLogFolder_);
}

DataModelManager::~DataModelManager() = default;

void DataModelManager::setDataDirectoryOverride(const QString& directory)
{
    g_dataDirectoryOverride = directory;
}

void DataModelManager::setReadOnly(bool readOnly)
{
    g_readOnly = readOnly;
}

QString DataModelManager::applicationIdentifier()
{
    return QStringLiteral("org.quillmere.Quillmere");
}

QString DataModelManager::applicationFilesDirectory() const
{
    if (!g_dataDirectoryOverride.isEmpty())
        return QDir::cleanPath(QDir(g_dataDirectoryOverride).absolutePath());
    const QByteArray fromEnv = qgetenv("QUILLMERE_DATA_DIR");
    if (!fromEnv.isEmpty())
        return QDir::cleanPath(QDir(QString::fromLocal8Bit(fromEnv)).absolutePath());
    QString base = QString::fromLocal8Bit(qgetenv("XDG_DATA_HOME"));
    if (base.isEmpty() || !QDir::isAbsolutePath(base))
        base = QDir::homePath() + QStringLiteral("/.local/share");
    return appendComponent(base, applicationIdentifier());
}

QString DataModelManager::storeFilePath() const
{
    return appendComponent(applicationFilesDirectory(), QStringLiteral("Quillmere.storedata"));
}

const ManagedObjectModel* DataModelManager::managedObjectModel()
{
    if (!managedObjectModel_)
        managedObjectModel_ = ManagedObjectModel::quillmereModel();
    return managedObjectModel_;
}

PersistentStoreCoordinator* DataModelManager::persistentStoreCoordinator()
{
    if (persistentStoreCoordinator_)
        return persistentStoreCoordinator_.get();

    const ManagedObjectModel* model = managedObjectModel();
    if (!model) {
        DebugTrace("%s:%s No model to generate a store from", "DataModelManager", "persistentStoreCoordinator");
        return nullptr;
    }

    const QString directory = applicationFilesDirectory();
    QFileInfo info(directory);
    if (g_readOnly && !info.exists()) {
        // Nothing to read, and nothing to make: an empty registry.
        auto coordinator = std::make_unique<PersistentStoreCoordinator>(model);
        AppError error;
        if (!coordinator->addReadOnlySQLiteStoreAtPath(storeFilePath(), &error)) {
            appDelegate_->presentError(error);
            return nullptr;
        }
        persistentStoreCoordinator_ = std::move(coordinator);
        return persistentStoreCoordinator_.get();
    }
    if (!info.exists()) {
        if (!QDir().mkpath(directory)) {
            const int err = errno;
            AppError error{QStringLiteral("NSCocoaErrorDomain"), 513,
                           QStringLiteral("The folder for application data could not be created (%1).").arg(directory),
                           QString::fromLocal8Bit(std::strerror(err ? err : EACCES))};
            appDelegate_->presentError(error);
            return nullptr;
        }
    } else if (!info.isDir()) {
        AppError error{QStringLiteral("YOUR_ERROR_DOMAIN"), 101,
                       QStringLiteral("Expected a folder to store application data, found a file (%1).").arg(directory),
                       QString()};
        appDelegate_->presentError(error);
        return nullptr;
    }

    auto coordinator = std::make_unique<PersistentStoreCoordinator>(model);
    AppError error;
    bool added = g_readOnly ? coordinator->addReadOnlySQLiteStoreAtPath(storeFilePath(), &error)
                            : coordinator->addSQLiteStoreAtPath(storeFilePath(), &error);
    if (!added && g_readOnly && (error.code & 0xff) == SQLITE_READONLY) {
        // A save cut short (a process killed while it saved) left a journal that only a
        // writer can roll back: the registry is put back as it was before that save, as any
        // program that writes it would, and then read.
        coordinator = std::make_unique<PersistentStoreCoordinator>(model);
        error = AppError();
        added = coordinator->addSQLiteStoreAtPath(storeFilePath(), &error);
    }
    if (!added) {
        appDelegate_->presentError(error);
        return nullptr;
    }
    persistentStoreCoordinator_ = std::move(coordinator);
    return persistentStoreCoordinator_.get();
}

ManagedObjectContext* DataModelManager::managedObjectContext()
{
    if (managedObjectContext_)
        return managedObjectContext_.get();
    PersistentStoreCoordinator* coordinator = persistentStoreCoordinator();
    if (!coordinator) {
        AppError error{QStringLiteral("YOUR_ERROR_DOMAIN"), 9999, QStringLiteral("Failed to initialize the store"),
                       QStringLiteral("There was an error building up the data file.")};
        appDelegate_->presentError(error);
        return nullptr;
    }
    managedObjectContext_ = std::make_unique<ManagedObjectContext>(coordinator);
    return managedObjectContext_.get();
}

bool DataModelManager::saveContext()
{
    return saveContext(true);
}

bool DataModelManager::saveContext(bool rollbackOnFailure)
{
    // Uses the context only if it exists already: saving never builds the store.
    ManagedObjectContext* context = managedObjectContext_.get();
    if (!context || !context->hasChanges())
        return true;
    AppError error;
    if (context->save(&error))
        return true;
    DebugTrace("saveContext Error::%s", qPrintable(error.localizedFailureReason));
    if (rollbackOnFailure)
        context->rollback();
    return false;
}

QString DataModelManager::fullSQLite3FileNameWithProjectName(const QString& sqliteFileName) const
{
    return appendComponent(applicationFilesDirectory(), QStringLiteral("%1").arg(sqliteFileName));
}

sqlite3* DataModelManager::openOrCreateSQLite3DatabaseWithName(const QString& path)
{
    const QByteArray file = path.toUtf8();
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX;
    sqlite3* db = nullptr;
    if (QFileInfo::exists(path)) {
        DebugTrace("EXIST %s", file.constData());
        if (sqlite3_open_v2(file.constData(), &db, flags, nullptr) != SQLITE_OK) {
            sqlite3_close(db);
            return nullptr;
        }
        waitWhileBusy(db);
        useWriteAheadLog(db);
        // A crawl database made before the fetch log existed gets it; nothing else changes.
        FetchLog::addTableWhenMissing(db);
        return db;
    }
    DebugTrace("CREATE %s", file.constData());
    if (sqlite3_open_v2(file.constData(), &db, flags, nullptr) != SQLITE_OK) {
        sqlite3_close(db);
        return nullptr;
    }
    waitWhileBusy(db);
    useWriteAheadLog(db);
    for (const char* statement : kSchema) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db, statement, -1, &stmt, nullptr) == SQLITE_OK)
            sqlite3_step(stmt);
        sqlite3_finalize(stmt);
    }
    sqlite3_exec(db, FetchLog::createTableStatement(), nullptr, nullptr, nullptr);
    return db;
}

void DataModelManager::closeSQLite3Database(sqlite3* database)
{
    StatementCache::release(database);
    sqlite3_close(database);
}

void DataModelManager::deleteSQLite3DatabaseWithName(const QString& path)
{
    QFile::remove(path);
    // A crawl killed inside a transaction leaves its journal beside the database.
    for (const char* suffix : {"-journal", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
}

void DataModelManager::truncateSQLite3Database(sqlite3* database)
{
    // All or none: a process killed between two of them would leave pages whose links
    // are gone, or a queue whose pages are.
    const bool grouped = database && sqlite3_get_autocommit(database)
                         && sqlite3_exec(database, "begin", nullptr, nullptr, nullptr) == SQLITE_OK;
    // The fetch log goes with the crawl it describes; a missing one is no failure.
    for (const char* statement :
         {"delete from Links", "delete from Page", "delete from DownloaderQueue", "delete from FetchLog"}) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(database, statement, -1, &stmt, nullptr) == SQLITE_OK)
            sqlite3_step(stmt);
        sqlite3_finalize(stmt);
    }
    if (grouped && sqlite3_exec(database, "commit", nullptr, nullptr, nullptr) != SQLITE_OK)
        sqlite3_exec(database, "rollback", nullptr, nullptr, nullptr);
    // Answers a crawl keeps in memory for this connection are of the rows just removed.
    PageRowCache::clear(database);
}

const char* const* DataModelManager::crawlDatabaseSchema(int* count)
{
    if (count)
        *count = int(std::size(kSchema));
    return kSchema;
}

QString DataModelManager::fullLogFileNameWithProjectName(const QString& projectName) const
{
    return appendComponent(defaultLogFolder_, QStringLiteral("%1.log").arg(projectName));
}

QString DataModelManager::fullLogErrorsFileNameWithProjectName(const QString& projectName) const
{
    return appendComponent(applicationFilesDirectory(), QStringLiteral("%1_errors.log").arg(projectName));
}

QString DataModelManager::fullHtmlLocalFileNameWithProjectName(const QString& projectName,
                                                               const QString& htmlFileName) const
{
    const QString folder = appendComponent(defaultLogFolder_, projectName);
    if (!QFileInfo::exists(folder))
        QDir().mkpath(folder);
    return appendComponent(folder, htmlFileName);
}

void DataModelManager::deleteLogFileNameWithProjectName(const QString& projectName)
{
    const QString path = fullLogFileNameWithProjectName(projectName);
    if (QFileInfo::exists(path))
        removePath(path);
}

void DataModelManager::deleteLogErrorsFileNameWithProjectName(const QString& projectName)
{
    const QString path = fullLogErrorsFileNameWithProjectName(projectName);
    if (QFileInfo::exists(path))
        removePath(path);
}

void DataModelManager::deleteHtmlLocalFilesWithProjectName(const QString& projectName)
{
    const QString folder = appendComponent(defaultLogFolder_, projectName);
    if (QFileInfo::exists(folder))
        removePath(folder);
}
