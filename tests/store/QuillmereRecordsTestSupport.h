#pragma once
// A project with an open crawl database for the record tests, plus raw SQL helpers to check
// what the records wrote and to damage the database file.

#include "store/DataModelManager.h"
#include "store/Project.h"
#include "store/SQLite3Wrapper.h"
#include "support/TestApp.h"
#include "support/TraceCapture.h"

#include <QFile>
#include <QString>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <initializer_list>
#include <optional>
#include <string>

class RecordsFixture : public ::testing::Test {
protected:
    void SetUp() override
    {
        project = Project::createProjectWithName(QStringLiteral("p"), QStringLiteral("http://example.com"), -1, -1);
        ASSERT_TRUE(project);
        ASSERT_NE(project->sqlite3Database(), nullptr);
    }

    void TearDown() override
    {
        if (project)
            project->closeSQLiteDatabase();
    }

    sqlite3* db() { return project->sqlite3Database(); }

    void exec(const std::string& sql)
    {
        char* error = nullptr;
        const int rc = sqlite3_exec(db(), sql.c_str(), nullptr, nullptr, &error);
        ASSERT_EQ(rc, SQLITE_OK) << sql << ": " << (error ? error : "");
        sqlite3_free(error);
    }

    // First column of the first row; nothing when no row comes back or the column is NULL.
    std::optional<qint64> queryInt(const std::string& sql)
    {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sql << ": " << sqlite3_errmsg(db());
            return std::nullopt;
        }
        std::optional<qint64> value;
        if (sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_type(stmt, 0) != SQLITE_NULL)
            value = sqlite3_column_int64(stmt, 0);
        sqlite3_finalize(stmt);
        return value;
    }

    // First column of the first row as text; a null string for NULL or no row.
    QString queryText(const std::string& sql)
    {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sql << ": " << sqlite3_errmsg(db());
            return QString();
        }
        QString value;
        if (sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_type(stmt, 0) != SQLITE_NULL)
            value = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
        sqlite3_finalize(stmt);
        return value;
    }

    std::optional<double> queryDouble(const std::string& sql)
    {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db(), sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
            ADD_FAILURE() << sql << ": " << sqlite3_errmsg(db());
            return std::nullopt;
        }
        std::optional<double> value;
        if (sqlite3_step(stmt) == SQLITE_ROW && sqlite3_column_type(stmt, 0) != SQLITE_NULL)
            value = sqlite3_column_double(stmt, 0);
        sqlite3_finalize(stmt);
        return value;
    }

    // Closes the database and puts bytes that are not a database in place of the file; the
    // next record operation opens it again.
    void replaceDatabaseWithGarbage()
    {
        const QString path = project->full_sqlite_name();
        project->closeSQLiteDatabase();
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(QByteArray(4096, 'x'));
        file.close();
    }

    // Closes the database and replaces the file with one that holds only the given tables
    // (and their indexes), as an older or damaged file would.
    void replaceDatabaseWithTablesOnly(std::initializer_list<std::string> tables)
    {
        const QString path = project->full_sqlite_name();
        project->closeSQLiteDatabase();
        ASSERT_TRUE(QFile::remove(path));
        sqlite3* raw = nullptr;
        ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &raw), SQLITE_OK);
        int count = 0;
        const char* const* schema = DataModelManager::crawlDatabaseSchema(&count);
        for (int i = 0; i < count; ++i) {
            const std::string statement = schema[i];
            for (const std::string& table : tables) {
                if (statement.rfind("create table " + table + " ", 0) == 0 ||
                    statement.rfind("create table " + table + "(", 0) == 0 ||
                    statement.find(" on " + table + "(") != std::string::npos)
                    sqlite3_exec(raw, statement.c_str(), nullptr, nullptr, nullptr);
            }
        }
        sqlite3_close(raw);
    }

    // A project that carries a wrapper around a null handle, as after a failed open.
    void useNullHandle()
    {
        project->closeSQLiteDatabase();
        project->setDatabase(std::make_shared<SQLite3Wrapper>(nullptr));
        ASSERT_EQ(project->sqlite3Database(), nullptr);
    }

    static bool traced(const TraceCapture& trace, const std::string& text)
    {
        return !kDebugTraceEnabled || trace.contains(text);
    }

    TestApp app;
    ProjectPtr project;
};
