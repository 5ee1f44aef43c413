#include "store/PersistentStoreCoordinator.h"

#include "store/DatabaseFileCheck.h"

#include <QDateTime>
#include <QFileInfo>
#include <QStringList>

#include <sqlite3.h>

namespace {

using Type = AttributeDescription::Type;

struct Statement {
    sqlite3_stmt* stmt = nullptr;
    ~Statement() { sqlite3_finalize(stmt); }
};

void bindValue(sqlite3_stmt* stmt, int index, const AttributeDescription& a, const QVariant& v)
{
    if (v.isNull() || !v.isValid()) {
        sqlite3_bind_null(stmt, index);
        return;
    }
    switch (a.type) {
    case Type::String: {
        const QByteArray utf8 = v.toString().toUtf8();
        sqlite3_bind_text(stmt, index, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
        break;
    }
    case Type::Date:
        sqlite3_bind_int64(stmt, index, v.toDateTime().toMSecsSinceEpoch());
        break;
    case Type::Integer:
    case Type::Boolean:
        sqlite3_bind_int64(stmt, index, v.toLongLong());
        break;
    case Type::Transient:
        sqlite3_bind_null(stmt, index);
        break;
    }
}

QVariant readValue(sqlite3_stmt* stmt, int column, const AttributeDescription& a)
{
    if (sqlite3_column_type(stmt, column) == SQLITE_NULL)
        return QVariant();
    switch (a.type) {
    case Type::String:
        return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, column)),
                                 sqlite3_column_bytes(stmt, column));
    case Type::Date:
        return QDateTime::fromMSecsSinceEpoch(sqlite3_column_int64(stmt, column));
    case Type::Integer:
        return QVariant(qlonglong(sqlite3_column_int64(stmt, column)));
    case Type::Boolean:
        return QVariant(sqlite3_column_int64(stmt, column) != 0);
    case Type::Transient:
        break;
    }
    return QVariant();
}

QString sqlType(Type t)
{
    return t == Type::String ? QStringLiteral("text") : QStringLiteral("integer");
}

QString createTableStatement(const EntityDescription& entity)
{
    QStringList columns{QStringLiteral("Z_PK integer primary key autoincrement")};
    for (const auto& a : entity.persistentAttributes())
        columns << a.name + QLatin1Char(' ') + sqlType(a.type);
    return QStringLiteral("create table if not exists %1 (%2)").arg(entity.name, columns.join(QLatin1Char(',')));
}

bool hasColumn(sqlite3* db, const QString& table, const QString& column)
{
    Statement probe;
    const QString sql = QStringLiteral("select %1 from %2 limit 0").arg(column, table);
    return sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &probe.stmt, nullptr) == SQLITE_OK;
}

bool hasTable(sqlite3* db, const QString& name)
{
    Statement s;
    if (sqlite3_prepare_v2(db, "select 1 from sqlite_master where type='table' and name=?", -1, &s.stmt, nullptr) != SQLITE_OK)
        return false;
    const QByteArray utf8 = name.toUtf8();
    sqlite3_bind_text(s.stmt, 1, utf8.constData(), -1, SQLITE_TRANSIENT);
    return sqlite3_step(s.stmt) == SQLITE_ROW;
}

} // namespace

PersistentStoreCoordinator::PersistentStoreCoordinator(const ManagedObjectModel* model) : model_(model) {}

PersistentStoreCoordinator::~PersistentStoreCoordinator()
{
    if (db_)
        sqlite3_close(db_);
}

AppError PersistentStoreCoordinator::storeError(const QString& what) const
{
    AppError e;
    e.domain = QStringLiteral("QuillmereStoreErrorDomain");
    e.code = db_ ? sqlite3_extended_errcode(db_) : SQLITE_CANTOPEN;
    e.localizedDescription = what;
    e.localizedFailureReason = db_ ? QString::fromUtf8(sqlite3_errmsg(db_)) : QStringLiteral("unable to open database file");
    return e;
}

bool PersistentStoreCoordinator::addSQLiteStoreAtPath(const QString& path, AppError* error)
{
    // An empty or missing file is a new registry; a file with contents must already hold the
    // registry's tables.
    const bool existing = QFileInfo(path).size() > 0;
    sqlite3* db = nullptr;
    const int rc = sqlite3_open_v2(path.toUtf8().constData(), &db,
                                   SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr);
    db_ = db;
    path_ = path;
    auto fail = [&](const QString& what) {
        if (error)
            *error = storeError(what);
        sqlite3_close(db_);
        db_ = nullptr;
        return false;
    };
    const QString cannotOpen = QStringLiteral("The project registry could not be opened (%1).").arg(path);
    if (rc != SQLITE_OK)
        return fail(cannotOpen);
    sqlite3_busy_timeout(db_, 5000);
    // A damaged registry would read as one with fewer projects, or none: say so instead.
    const QString damaged = QStringLiteral("The project registry is damaged (%1).").arg(path);
    auto failDamaged = [&](const QString& why) {
        fail(damaged);
        if (error)
            error->localizedFailureReason = why;
        return false;
    };
    QString problem;
    if (!DatabaseFileCheck::quickCheck(db_, &problem)) {
        if (DatabaseFileCheck::isBusy(sqlite3_errcode(db_)))
            return fail(cannotOpen);
        return failDamaged(problem);
    }
    for (const auto& entity : model_->entities) {
        if (existing && !hasTable(db_, entity.name))
            return failDamaged(QStringLiteral("its %1 table is missing").arg(entity.name));
        if (sqlite3_exec(db_, createTableStatement(entity).toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            return fail(cannotOpen);
        // A store written by an older build may miss columns added since: add them.
        for (const auto& a : entity.persistentAttributes()) {
            if (hasColumn(db_, entity.name, a.name))
                continue;
            const QString alter = QStringLiteral("alter table %1 add column %2 %3").arg(entity.name, a.name, sqlType(a.type));
            if (sqlite3_exec(db_, alter.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
                return fail(cannotOpen);
        }
    }
    return true;
}

bool PersistentStoreCoordinator::addReadOnlySQLiteStoreAtPath(const QString& path, AppError* error)
{
    path_ = path;
    auto fail = [&](const QString& what, const QString& why = QString()) {
        if (error) {
            *error = storeError(what);
            if (!why.isEmpty())
                error->localizedFailureReason = why;
        }
        sqlite3_close(db_);
        db_ = nullptr;
        return false;
    };
    const QString cannotOpen = QStringLiteral("The project registry could not be opened (%1).").arg(path);
    if (QFileInfo(path).size() == 0) {
        // No registry yet: an empty one in memory, so that nothing is written to make it.
        if (sqlite3_open_v2(":memory:", &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_FULLMUTEX, nullptr)
            != SQLITE_OK)
            return fail(cannotOpen);
        for (const auto& entity : model_->entities) {
            if (sqlite3_exec(db_, createTableStatement(entity).toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
                return fail(cannotOpen);
        }
        return true;
    }
    if (sqlite3_open_v2(path.toUtf8().constData(), &db_, SQLITE_OPEN_READONLY | SQLITE_OPEN_FULLMUTEX, nullptr) != SQLITE_OK)
        return fail(cannotOpen);
    sqlite3_busy_timeout(db_, 5000);
    const QString damaged = QStringLiteral("The project registry is damaged (%1).").arg(path);
    QString problem;
    if (!DatabaseFileCheck::quickCheck(db_, &problem))
        return DatabaseFileCheck::isBusy(sqlite3_errcode(db_)) ? fail(cannotOpen) : fail(damaged, problem);
    for (const auto& entity : model_->entities) {
        if (!hasTable(db_, entity.name))
            return fail(damaged, QStringLiteral("its %1 table is missing").arg(entity.name));
        for (const auto& a : entity.persistentAttributes()) {
            if (!hasColumn(db_, entity.name, a.name))
                unwrittenColumns_.insert(a.name);
        }
    }
    return true;
}

std::optional<QList<StoreRow>> PersistentStoreCoordinator::fetchRows(const EntityDescription& entity, AppError* error)
{
    const auto attributes = entity.persistentAttributes();
    QStringList names{QStringLiteral("Z_PK")};
    for (const auto& a : attributes)
        names << (unwrittenColumns_.contains(a.name) ? QStringLiteral("null") : a.name);
    const QString sql = QStringLiteral("select %1 from %2 order by Z_PK").arg(names.join(QLatin1Char(',')), entity.name);
    Statement s;
    if (!db_ || sqlite3_prepare_v2(db_, sql.toUtf8().constData(), -1, &s.stmt, nullptr) != SQLITE_OK) {
        if (error)
            *error = storeError(QStringLiteral("The project registry could not be read."));
        return std::nullopt;
    }
    QList<StoreRow> rows;
    int rc;
    while ((rc = sqlite3_step(s.stmt)) == SQLITE_ROW) {
        StoreRow row;
        row.primaryKey = sqlite3_column_int64(s.stmt, 0);
        for (int i = 0; i < attributes.size(); ++i)
            row.values.insert(attributes[i].name, readValue(s.stmt, i + 1, attributes[i]));
        rows.append(row);
    }
    if (rc != SQLITE_DONE) {
        if (error)
            *error = storeError(QStringLiteral("The project registry could not be read."));
        return std::nullopt;
    }
    return rows;
}

std::optional<qint64> PersistentStoreCoordinator::countRows(const EntityDescription& entity, AppError* error)
{
    Statement s;
    const QString sql = QStringLiteral("select count(*) from %1").arg(entity.name);
    if (!db_ || sqlite3_prepare_v2(db_, sql.toUtf8().constData(), -1, &s.stmt, nullptr) != SQLITE_OK
        || sqlite3_step(s.stmt) != SQLITE_ROW) {
        if (error)
            *error = storeError(QStringLiteral("The project registry could not be read."));
        return std::nullopt;
    }
    return sqlite3_column_int64(s.stmt, 0);
}

bool PersistentStoreCoordinator::saveChanges(const EntityDescription& entity, const StoreChanges& changes,
                                             QList<qint64>* insertedKeys, AppError* error)
{
    const QString cannotSave = QStringLiteral("The project registry could not be saved.");
    if (!db_) {
        if (error)
            *error = storeError(cannotSave);
        return false;
    }
    const auto attributes = entity.persistentAttributes();
    QStringList names, marks, assignments;
    for (const auto& a : attributes) {
        names << a.name;
        marks << QStringLiteral("?");
        assignments << a.name + QStringLiteral("=?");
    }
    const QByteArray insertSql = QStringLiteral("insert into %1(%2) values(%3)")
                                     .arg(entity.name, names.join(QLatin1Char(',')), marks.join(QLatin1Char(',')))
                                     .toUtf8();
    const QByteArray updateSql = QStringLiteral("update %1 set %2 where Z_PK=?")
                                     .arg(entity.name, assignments.join(QLatin1Char(',')))
                                     .toUtf8();
    const QByteArray deleteSql = QStringLiteral("delete from %1 where Z_PK=?").arg(entity.name).toUtf8();

    auto fail = [&] {
        if (error)
            *error = storeError(cannotSave);
        sqlite3_exec(db_, "rollback", nullptr, nullptr, nullptr);
        return false;
    };
    if (sqlite3_exec(db_, "begin immediate", nullptr, nullptr, nullptr) != SQLITE_OK)
        return fail();

    QList<qint64> keys;
    for (const auto& values : changes.inserts) {
        Statement s;
        if (sqlite3_prepare_v2(db_, insertSql.constData(), -1, &s.stmt, nullptr) != SQLITE_OK)
            return fail();
        for (int i = 0; i < attributes.size(); ++i)
            bindValue(s.stmt, i + 1, attributes[i], values.value(attributes[i].name));
        if (sqlite3_step(s.stmt) != SQLITE_DONE)
            return fail();
        keys.append(sqlite3_last_insert_rowid(db_));
    }
    for (const auto& row : changes.updates) {
        Statement s;
        if (sqlite3_prepare_v2(db_, updateSql.constData(), -1, &s.stmt, nullptr) != SQLITE_OK)
            return fail();
        for (int i = 0; i < attributes.size(); ++i)
            bindValue(s.stmt, i + 1, attributes[i], row.values.value(attributes[i].name));
        sqlite3_bind_int64(s.stmt, int(attributes.size()) + 1, row.primaryKey);
        if (sqlite3_step(s.stmt) != SQLITE_DONE)
            return fail();
    }
    for (qint64 key : changes.deletes) {
        Statement s;
        if (sqlite3_prepare_v2(db_, deleteSql.constData(), -1, &s.stmt, nullptr) != SQLITE_OK)
            return fail();
        sqlite3_bind_int64(s.stmt, 1, key);
        if (sqlite3_step(s.stmt) != SQLITE_DONE)
            return fail();
    }
    if (sqlite3_exec(db_, "commit", nullptr, nullptr, nullptr) != SQLITE_OK)
        return fail();
    if (insertedKeys)
        *insertedKeys = keys;
    return true;
}
