#include "crawler/CrawlTransaction.h"
#include "store/DatabaseErrorLog.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sqlite3.h>

namespace {

qint64 rows(sqlite3* db)
{
    sqlite3_stmt* stmt = nullptr;
    sqlite3_prepare_v2(db, "select count(*) from T", -1, &stmt, nullptr);
    const qint64 n = sqlite3_step(stmt) == SQLITE_ROW ? sqlite3_column_int64(stmt, 0) : -1;
    sqlite3_finalize(stmt);
    return n;
}

class CrawlTransactionTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!DatabaseErrorLog::install())
            GTEST_SKIP() << "the library was set up before its error log could be installed";
        ASSERT_EQ(sqlite3_open(QFile::encodeName(dir.path() + "/t.sqlite").constData(), &db), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(db, "create table T(v blob)", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    void TearDown() override { sqlite3_close(db); }

    QTemporaryDir dir;
    sqlite3* db = nullptr;
};

TEST_F(CrawlTransactionTest, ThePageLandsWhole)
{
    CrawlTransaction transaction(db);
    EXPECT_EQ(sqlite3_exec(db, "insert into T values(1)", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(db, "insert into T values(2)", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_TRUE(transaction.commit());
    EXPECT_EQ(rows(db), 2);
    EXPECT_TRUE(sqlite3_get_autocommit(db));
}

TEST_F(CrawlTransactionTest, AWriteThatFailsUndoesThePageAndSaysWhy)
{
    // The file may not grow: a big row fails as on a full disk, the small ones after it
    // would still fit.
    ASSERT_EQ(sqlite3_exec(db, "pragma max_page_count = 3", nullptr, nullptr, nullptr), SQLITE_OK);
    {
        CrawlTransaction transaction(db);
        EXPECT_EQ(sqlite3_exec(db, "insert into T values(1)", nullptr, nullptr, nullptr), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(db, "insert into T values(zeroblob(100000))", nullptr, nullptr, nullptr), SQLITE_FULL);
        sqlite3_exec(db, "insert into T values(3)", nullptr, nullptr, nullptr);
        EXPECT_FALSE(transaction.commit());
        EXPECT_TRUE(transaction.errorMessage().contains("full")) << transaction.errorMessage().toStdString();
    }
    EXPECT_EQ(rows(db), 0);
    EXPECT_TRUE(sqlite3_get_autocommit(db));
    // The next page starts afresh.
    CrawlTransaction next(db);
    EXPECT_EQ(sqlite3_exec(db, "insert into T values(4)", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_TRUE(next.commit());
    EXPECT_EQ(rows(db), 1);
}

TEST_F(CrawlTransactionTest, NoStatementCommitsOnItsOwnWhileAPageIsOpen)
{
    CrawlTransaction transaction(db);
    EXPECT_EQ(sqlite3_exec(db, "insert into T values(1)", nullptr, nullptr, nullptr), SQLITE_OK);
    // As if the library had given the transaction up after a failed write: what follows
    // would commit statement by statement.
    ASSERT_EQ(sqlite3_exec(db, "rollback", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_NE(sqlite3_exec(db, "insert into T values(2)", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_FALSE(transaction.commit());
    EXPECT_EQ(rows(db), 0);
    EXPECT_EQ(sqlite3_exec(db, "insert into T values(3)", nullptr, nullptr, nullptr), SQLITE_OK);  // hook gone
    EXPECT_EQ(rows(db), 1);
}

} // namespace
