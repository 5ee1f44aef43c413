#include "store/DataModelManager.h"
#include "store/Project.h"
#include "store/SQLite3Wrapper.h"
#include "support/TestApp.h"
#include "support/TraceCapture.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <thread>

namespace {

std::set<std::string> schemaObjects(sqlite3* db)
{
    std::set<std::string> names;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, "select type || ':' || name from sqlite_master where name not like 'sqlite_%'", -1, &stmt,
                           nullptr) != SQLITE_OK)
        return names;
    while (sqlite3_step(stmt) == SQLITE_ROW)
        names.insert(reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0)));
    sqlite3_finalize(stmt);
    return names;
}

long long scalar(sqlite3* db, const char* sql)
{
    sqlite3_stmt* stmt = nullptr;
    long long v = -1;
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW)
        v = sqlite3_column_int64(stmt, 0);
    sqlite3_finalize(stmt);
    return v;
}

void exec(sqlite3* db, const char* sql)
{
    char* err = nullptr;
    ASSERT_EQ(sqlite3_exec(db, sql, nullptr, nullptr, &err), SQLITE_OK) << (err ? err : "");
}

const std::set<std::string> kFullSchema{
    "table:Page",           "index:PAGE_URL_IDX",   "table:Links",          "index:SOURCES_IDX",
    "table:DownloaderQueue", "index:DOWNLOADER_QUEUE_DONE", "index:DOWNLOADER_QUEUE_URL", "table:LinkHeaders",
    "index:HEADERS_IDX",     "table:FetchLog"};

TEST(CrawlDatabase, ANewDatabaseHasTheNineSchemaObjectsAndTheFetchLog)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    sqlite3* db = p->sqlite3Database();
    ASSERT_TRUE(db);
    EXPECT_EQ(schemaObjects(db), kFullSchema);
    int count = 0;
    DataModelManager::crawlDatabaseSchema(&count);
    EXPECT_EQ(count, 9);
    // Foreign keys are declared, never enforced.
    EXPECT_EQ(scalar(db, "pragma foreign_keys"), 0);
}

TEST(CrawlDatabase, TheConnectionIsSerialized)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    sqlite3* db = p->sqlite3Database();
    ASSERT_TRUE(db);
    EXPECT_NE(sqlite3_threadsafe(), 0);
    EXPECT_NE(sqlite3_db_mutex(db), nullptr);  // only serialized connections carry a mutex
    // Two threads writing through the one handle.
    auto writer = [db](int base) {
        for (int i = 0; i < 40; ++i) {
            const std::string sql = "insert into LinkHeaders(url,content_type,content_length,downloaded_length) values('u" +
                                    std::to_string(base + i) + "','text/html',1,1)";
            sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr);
        }
    };
    std::thread a(writer, 0), b(writer, 1000);
    a.join();
    b.join();
    EXPECT_EQ(scalar(db, "select count(*) from LinkHeaders"), 80);
}

TEST(CrawlDatabase, AFileDeletedBehindItsBackIsRecreated)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    exec(p->sqlite3Database(), "insert into DownloaderQueue(url,path,document_name,depth,perform_done) values('u','/','',1,0)");
    p->closeSQLiteDatabase();
    ASSERT_TRUE(QFile::remove(app.path() + "/s.sqlite"));
    TraceCapture trace;
    sqlite3* db = p->sqlite3Database();
    ASSERT_TRUE(db);
    EXPECT_EQ(schemaObjects(db), kFullSchema);
    EXPECT_EQ(scalar(db, "select count(*) from DownloaderQueue"), 0);
    if (kDebugTraceEnabled)
        EXPECT_TRUE(trace.contains("CREATE " + (app.path() + "/s.sqlite").toStdString()));
}

TEST(CrawlDatabase, AnExistingFileIsOpenedAsItIs)
{
    TestApp app;
    {
        sqlite3* raw = nullptr;
        ASSERT_EQ(sqlite3_open((app.path() + "/partial.sqlite").toUtf8().constData(), &raw), SQLITE_OK);
        exec(raw, "create table Page (idt integer primary key autoincrement,path text not null, page text not null, "
                  "title text not null, url text not null,is_no_index integer,is_no_follow integer,is_canonical integer,"
                  "in_link_count integer,out_link_count integer,depth integer,weight real)");
        sqlite3_close(raw);
    }
    TraceCapture trace;
    ProjectPtr p = Project::createProjectWithName("partial", "http://example.com", -1, -1);
    sqlite3* db = p->sqlite3Database();
    ASSERT_TRUE(db);
    // Not upgraded: only the table that was there.
    EXPECT_EQ(schemaObjects(db), (std::set<std::string>{"table:Page"}));
    if (kDebugTraceEnabled)
        EXPECT_TRUE(trace.contains("EXIST " + (app.path() + "/partial.sqlite").toStdString()));
}

TEST(CrawlDatabase, TruncateKeepsHeadersAndIdentifiersGoOn)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    sqlite3* db = p->sqlite3Database();
    exec(db, "insert into Page(path,page,title,url,depth) values('/','a','','http://example.com/a',1)");
    exec(db, "insert into Page(path,page,title,url,depth) values('/','b','','http://example.com/b',1)");
    exec(db, "insert into Links(idt_page,idt_source,anchor,counter) values(2,1,'x',1)");
    exec(db, "insert into DownloaderQueue(url,path,document_name,depth,perform_done) values('u','/','',1,0)");
    exec(db, "insert into LinkHeaders(url,content_type,content_length,downloaded_length) values('u','text/html',3,3)");
    p->truncateSQLiteDatabase();
    EXPECT_EQ(scalar(db, "select count(*) from Page"), 0);
    EXPECT_EQ(scalar(db, "select count(*) from Links"), 0);
    EXPECT_EQ(scalar(db, "select count(*) from DownloaderQueue"), 0);
    EXPECT_EQ(scalar(db, "select count(*) from LinkHeaders"), 1);
    exec(db, "insert into Page(path,page,title,url,depth) values('/','c','','http://example.com/c',1)");
    EXPECT_EQ(scalar(db, "select max(idt) from Page"), 3);
}

TEST(CrawlDatabase, TruncateUsesTheOpenHandleOnly)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    p->closeSQLiteDatabase();
    p->truncateSQLiteDatabase();  // no open database: nothing happens, nothing opens
    EXPECT_FALSE(p->database());
}

TEST(CrawlDatabase, ClosingANeverOpenedProjectIsHarmless)
{
    TestApp app;
    auto p = std::make_shared<Project>();
    p->setName("never");
    p->closeSQLiteDatabase();
    p->closeSQLiteDatabase();
    EXPECT_FALSE(p->database());
    app.manager()->closeSQLite3Database(nullptr);
}

TEST(CrawlDatabase, CloseForgetsTheWrapper)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    std::shared_ptr<SQLite3Wrapper> wrapper = p->database();
    ASSERT_TRUE(wrapper && wrapper->database());
    p->closeSQLiteDatabase();
    EXPECT_FALSE(p->database());
    EXPECT_EQ(wrapper->database(), nullptr);
    EXPECT_TRUE(p->sqlite3Database());  // opened again on demand
}

TEST(CrawlDatabase, AFailedOpenIsNotRetriedUntilClosed)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    p->closeSQLiteDatabase();
    p->setSqlite_name("missing-folder/s.sqlite");
    EXPECT_TRUE(p->openSQLiteDatabase());  // answers YES with a wrapper around nothing
    ASSERT_TRUE(p->database());
    EXPECT_EQ(p->database()->database(), nullptr);
    EXPECT_EQ(p->sqlite3Database(), nullptr);
    QDir().mkpath(app.path() + "/missing-folder");
    EXPECT_EQ(p->sqlite3Database(), nullptr);  // still the failed wrapper
    p->closeSQLiteDatabase();
    EXPECT_NE(p->sqlite3Database(), nullptr);
}

TEST(CrawlDatabase, DeletingAPageRowLeavesItsLinks)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    sqlite3* db = p->sqlite3Database();
    exec(db, "insert into Page(path,page,title,url,depth) values('/','a','','http://example.com/a',1)");
    exec(db, "insert into Links(idt_page,idt_source,anchor,counter) values(1,1,'x',1)");
    exec(db, "delete from Page where idt=1");
    EXPECT_EQ(scalar(db, "select count(*) from Links where idt_page=1"), 1);
}

TEST(CrawlDatabase, DeleteRemovesTheFileEvenWhileOpen)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("s", "http://example.com", -1, -1);
    ASSERT_TRUE(p->sqlite3Database());
    p->deleteSQLiteDatabase();
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/s.sqlite"));
    EXPECT_TRUE(p->database());  // not closed by the delete
    p->deleteSQLiteDatabase();   // a missing file is silent
    app.manager()->deleteSQLite3DatabaseWithName(app.path() + "/nothing-here.sqlite");
}

TEST(CrawlDatabase, DeleteRemovesTheJournalsAKilledCrawlLeaves)
{
    TestApp app;
    const QString file = app.path() + "/k.sqlite";
    for (const QString& name : {file, file + "-journal", file + "-wal", file + "-shm"}) {
        QFile f(name);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    app.manager()->deleteSQLite3DatabaseWithName(file);
    for (const QString& name : {file, file + "-journal", file + "-wal", file + "-shm"})
        EXPECT_FALSE(QFileInfo::exists(name)) << name.toStdString();
}

TEST(CrawlDatabase, AFileThatIsNotADatabaseFailsEveryStatement)
{
    TestApp app;
    QFile junk(app.path() + "/junk.sqlite");
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(8192, 'j'));
    junk.close();
    ProjectPtr p = Project::createProjectWithName("junk", "http://example.com", -1, -1);
    sqlite3* db = p->sqlite3Database();
    ASSERT_TRUE(db);  // the library opens lazily
    sqlite3_stmt* stmt = nullptr;
    EXPECT_NE(sqlite3_prepare_v2(db, "select count(idt) from Page", -1, &stmt, nullptr), SQLITE_OK);
    sqlite3_finalize(stmt);
    p->truncateSQLiteDatabase();  // silently does nothing
    EXPECT_EQ(junk.size(), 8192);
}

} // namespace

TEST(CrawlDatabase, CrawlDatabasesKeepAWriteAheadLogThatReadersGoOnBeside)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("w", "http://example.com", -1, -1);
    sqlite3* db = p->sqlite3Database();
    ASSERT_TRUE(db);
    auto pragma = [](sqlite3* handle, const char* sql) {
        sqlite3_stmt* stmt = nullptr;
        std::string value;
        if (sqlite3_prepare_v2(handle, sql, -1, &stmt, nullptr) == SQLITE_OK && sqlite3_step(stmt) == SQLITE_ROW)
            value = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
        sqlite3_finalize(stmt);
        return value;
    };
    EXPECT_EQ(pragma(db, "PRAGMA journal_mode"), "wal");
    EXPECT_EQ(pragma(db, "PRAGMA synchronous"), "1");  // NORMAL

    // A writer in the middle of a transaction does not keep another connection (another
    // program's `pages`) from reading what was committed.
    ASSERT_EQ(sqlite3_exec(db, "insert into Page(path,page,title,url,depth) values('/','a','A','u1',1)", nullptr,
                           nullptr, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "begin; insert into Page(path,page,title,url,depth) values('/','b','B','u2',1)",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3* reader = nullptr;
    ASSERT_EQ(sqlite3_open_v2((app.path() + "/w.sqlite").toUtf8().constData(), &reader, SQLITE_OPEN_READONLY, nullptr),
              SQLITE_OK);
    EXPECT_EQ(pragma(reader, "select count(*) from Page"), "1");
    sqlite3_close(reader);
    ASSERT_EQ(sqlite3_exec(db, "commit", nullptr, nullptr, nullptr), SQLITE_OK);
}
