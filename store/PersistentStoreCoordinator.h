#pragma once

#include "base/AppError.h"
#include "store/ManagedObjectModel.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QVariantMap>

#include <optional>

struct sqlite3;

// One row of the registry store: its primary key and its persistent attribute values
// (a null QVariant is an unset attribute).
struct StoreRow {
    qint64 primaryKey = 0;
    QVariantMap values;
};

struct StoreChanges {
    QList<QVariantMap> inserts;       // primary keys come back in the same order
    QList<StoreRow> updates;
    QList<qint64> deletes;
};

// The registry's SQLite store: one table per entity, one column per persistent attribute.
class PersistentStoreCoordinator {
public:
    explicit PersistentStoreCoordinator(const ManagedObjectModel* model);
    ~PersistentStoreCoordinator();
    PersistentStoreCoordinator(const PersistentStoreCoordinator&) = delete;
    PersistentStoreCoordinator& operator=(const PersistentStoreCoordinator&) = delete;

    const ManagedObjectModel* managedObjectModel() const { return model_; }
    QString storePath() const { return path_; }

    // Opens (or creates) the store file and its tables. On failure nothing is kept.
    bool addSQLiteStoreAtPath(const QString& path, AppError* error);
    // Opens the store file read-only and changes nothing in it: a missing or empty file is an
    // empty registry (held in memory), columns an older build did not write read as unset.
    // Saving then fails.
    bool addReadOnlySQLiteStoreAtPath(const QString& path, AppError* error);

    std::optional<QList<StoreRow>> fetchRows(const EntityDescription& entity, AppError* error);
    std::optional<qint64> countRows(const EntityDescription& entity, AppError* error);
    // Applies every change in one transaction: all or nothing.
    bool saveChanges(const EntityDescription& entity, const StoreChanges& changes,
                     QList<qint64>* insertedKeys, AppError* error);

private:
    AppError storeError(const QString& what) const;

    const ManagedObjectModel* model_;
    QString path_;
    sqlite3* db_ = nullptr;
    QSet<QString> unwrittenColumns_;  // read-only: attributes the file has no column for
};
