#pragma once

#include <QString>

#include <memory>

struct sqlite3;
class ApplicationDelegate;
class ManagedObjectModel;
class PersistentStoreCoordinator;
class ManagedObjectContext;

// Owns the registry store and knows where every file of the application lives.
class DataModelManager {
public:
    explicit DataModelManager(ApplicationDelegate* appDelegate);
    ~DataModelManager();
    DataModelManager(const DataModelManager&) = delete;
    DataModelManager& operator=(const DataModelManager&) = delete;

    // The application files directory: --data-dir, else $QUILLMERE_DATA_DIR, else
    // $XDG_DATA_HOME (default ~/.local/share) + the application identifier.
    static void setDataDirectoryOverride(const QString& directory);
    // For a program that only reads: nothing is created in the application files directory
    // (no folder, no "Logs", no registry file: a missing registry reads as an empty one) and
    // the registry is opened read-only. Set before the manager is made.
    static void setReadOnly(bool readOnly);
    static QString applicationIdentifier();
    QString applicationFilesDirectory() const;
    // The registry store: "Quillmere.storedata" in the application files directory.
    QString storeFilePath() const;

    const ManagedObjectModel* managedObjectModel();
    PersistentStoreCoordinator* persistentStoreCoordinator();
    ManagedObjectContext* managedObjectContext();
    bool saveContext();
    bool saveContext(bool rollbackOnFailure);

    ApplicationDelegate* appDelegate() const { return appDelegate_; }
    QString defaultLogFolder() const { return defaultLogFolder_; }

    // Crawl databases.
    QString fullSQLite3FileNameWithProjectName(const QString& sqliteFileName) const;
    sqlite3* openOrCreateSQLite3DatabaseWithName(const QString& path);
    void closeSQLite3Database(sqlite3* database);
    void deleteSQLite3DatabaseWithName(const QString& path);
    void truncateSQLite3Database(sqlite3* database);

    // Logs and saved pages.
    QString fullLogFileNameWithProjectName(const QString& projectName) const;
    QString fullLogErrorsFileNameWithProjectName(const QString& projectName) const;
    QString fullHtmlLocalFileNameWithProjectName(const QString& projectName, const QString& htmlFileName) const;
    void deleteLogFileNameWithProjectName(const QString& projectName);
    void deleteLogErrorsFileNameWithProjectName(const QString& projectName);
    void deleteHtmlLocalFilesWithProjectName(const QString& projectName);

    // The nine statements of a new crawl database, in order.
    static const char* const* crawlDatabaseSchema(int* count);

private:
    ApplicationDelegate* appDelegate_;
    QString defaultLogFolder_;
    const ManagedObjectModel* managedObjectModel_ = nullptr;
    std::unique_ptr<PersistentStoreCoordinator> persistentStoreCoordinator_;
    std::unique_ptr<ManagedObjectContext> managedObjectContext_;
};
