#include "store/RecordStatement.h"
#include "store/StatementCache.h"

#include <gtest/gtest.h>

#include <sqlite3.h>

namespace {

class StatementCacheTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(db, "create table T (a integer)", nullptr, nullptr, nullptr), SQLITE_OK);
    }
    void TearDown() override
    {
        StatementCache::release(db);
        EXPECT_EQ(sqlite3_close(db), SQLITE_OK);
    }
    sqlite3* db = nullptr;
};

TEST_F(StatementCacheTest, AFinishedStatementIsHandedOutAgainResetAndUnbound)
{
    sqlite3_stmt* first = nullptr;
    ASSERT_TRUE(RecordStatement::prepare(db, "insert into T values (?)", &first));
    sqlite3_bind_int(first, 1, 7);
    ASSERT_EQ(sqlite3_step(first), SQLITE_DONE);
    RecordStatement::finish(first);
    EXPECT_EQ(StatementCache::count(db), 1);

    sqlite3_stmt* second = nullptr;
    ASSERT_TRUE(RecordStatement::prepare(db, "insert into T values (?)", &second));
    EXPECT_EQ(second, first);
    EXPECT_EQ(StatementCache::count(db), 0);  // in use: not in the cache
    ASSERT_EQ(sqlite3_step(second), SQLITE_DONE);  // no binding left: a NULL row
    RecordStatement::finish(second);

    sqlite3_stmt* count = nullptr;
    ASSERT_TRUE(RecordStatement::prepare(db, "select count(*), count(a) from T", &count));
    ASSERT_EQ(sqlite3_step(count), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(count, 0), 2);
    EXPECT_EQ(sqlite3_column_int(count, 1), 1);
    RecordStatement::finish(count);
}

TEST_F(StatementCacheTest, ASecondUserOfTheSameTextGetsAStatementOfItsOwn)
{
    sqlite3_stmt* outer = nullptr;
    sqlite3_stmt* inner = nullptr;
    ASSERT_TRUE(RecordStatement::prepare(db, "select 1", &outer));
    ASSERT_TRUE(RecordStatement::prepare(db, "select 1", &inner));
    EXPECT_NE(outer, inner);
    RecordStatement::finish(inner);
    RecordStatement::finish(outer);  // the cache has one already: this one is finalized
    EXPECT_EQ(StatementCache::count(db), 1);
}

TEST_F(StatementCacheTest, ReleaseFinalizesEverythingSoTheConnectionCanClose)
{
    for (const char* sql : {"select 1", "select 2", "select a from T"}) {
        sqlite3_stmt* stmt = nullptr;
        ASSERT_TRUE(RecordStatement::prepare(db, sql, &stmt));
        RecordStatement::finish(stmt);
    }
    EXPECT_EQ(StatementCache::count(db), 3);
    StatementCache::release(db);
    EXPECT_EQ(StatementCache::count(db), 0);
    EXPECT_EQ(sqlite3_next_stmt(db, nullptr), nullptr);
}

TEST_F(StatementCacheTest, AFailedPreparationIsNotKept)
{
    sqlite3_stmt* stmt = nullptr;
    EXPECT_FALSE(RecordStatement::prepare(db, "select from nowhere", &stmt));
    EXPECT_EQ(stmt, nullptr);
    EXPECT_EQ(StatementCache::count(db), 0);
    EXPECT_FALSE(RecordStatement::prepare(nullptr, "select 1", &stmt));
}

} // namespace
