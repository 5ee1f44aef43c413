#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sqlite3.h>

namespace {

std::string page(const std::string& title, const std::string& body, const std::string& head = "")
{
    return "<html><head><title>" + title + "</title>" + head + "</head><body>" + body + "</body></html>";
}

std::string link(const std::string& href)
{
    return "<a href=\"" + href + "\">" + href + "</a>";
}

bool execute(const QString& file, const std::string& sql)
{
    sqlite3* db = nullptr;
    bool ok = sqlite3_open(QFile::encodeName(file).constData(), &db) == SQLITE_OK
              && sqlite3_exec(db, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

class CheckCommand : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
        // Every way a queue entry can end: analysed, 404, not HTML, noindex, canonical,
        // noindex and nofollow met before any link named it (at the end of a chain of
        // redirects), a redirect to a page analysed already.
        server.setPage("/", page("Home", link("/a.html") + link("/missing.html") + link("/logo.png") + link("/hidden.html")
                                             + link("/copy.html") + link("/chain1") + link("/old")));
        server.setPage("/a.html", page("A", link("/") + link("/a.html") + link("/logo.png")));
        server.setPage("/missing.html", page("Not found", ""), "text/html", 404);
        server.setPage("/logo.png", "\x89PNG", "image/png");
        server.setPage("/hidden.html", page("Hidden", link("/a.html"), "<meta name=\"robots\" content=\"noindex\">"));
        server.setPage("/copy.html", page("Copy", "", "<link rel=\"canonical\" href=\"http://elsewhere.example/\">"));
        server.setRedirect("/chain1", "/chain2");
        server.setRedirect("/chain2", "/quiet.html");
        server.setPage("/quiet.html", page("Quiet", link("/a.html"), "<meta name=\"robots\" content=\"noindex,nofollow\">"));
        server.setRedirect("/old", "/a.html");
    }

    CliResult run(const QStringList& args) { return runCli(args, dir.path()); }
    QString database(const QString& name) const { return dir.path() + "/" + name + ".sqlite"; }

    void crawl(const QString& name)
    {
        ASSERT_EQ(run({"new", name, base}).exitCode, 0);
        const CliResult r = run({"crawl", name});
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
};

TEST_F(CheckCommand, AFinishedCrawlIsSound)
{
    ASSERT_EQ(run({"new", "fresh", base}).exitCode, 0);
    CliResult r = run({"check", "fresh"});
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();

    crawl("site");
    r = run({"check", "site"});
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.out.startsWith("Checking 'site' (" + database("site") + ")\n")) << r.out.toStdString();
    for (const char* rule : {"integrity:", "links received:", "one page per URL:", "links between pages:",
                             "analysed pages:", "done entries:", "counters:"})
        EXPECT_TRUE(r.out.contains(QStringLiteral("  ok    ") + rule)) << rule << "\n" << r.out.toStdString();
    // The chain's first link and the link to a page analysed before left no record of
    // their answers.
    EXPECT_TRUE(r.out.contains("(9 done, 2 of them redirects)")) << r.out.toStdString();
    EXPECT_TRUE(r.out.endsWith("Sound: all 7 checks hold.\n"));

    EXPECT_EQ(run({"check", "nobody"}).exitCode, 2);
    EXPECT_EQ(run({"check"}).exitCode, 2);
    r = run({"check", "--help"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.startsWith("Usage: quillmere [--data-dir DIR] check NAME\n")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("5 something is wrong"));
}

TEST_F(CheckCommand, TheBuiltInDemoIsSound)
{
    ASSERT_EQ(runCli({"demo"}, dir.path(), 120000).exitCode, 0);
    const CliResult r = run({"check", "demo"});
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString() << r.err.toStdString();
}

TEST_F(CheckCommand, EachBrokenRuleIsNamedWithWhatBreaksIt)
{
    const std::string a = base.toStdString() + "/a.html";
    struct Damage {
        QString project;
        std::string sql;
        QString failure;
        QString detail;
    };
    const QList<Damage> damages{
        {"inlinks", "update Page set in_link_count = in_link_count + 1 where url = '" + a + "'",
         "FAIL  links received:", QString::fromStdString(a + ": in_link_count 4, but 3 Links rows point to it")},
        {"twice", "insert into Page(path,page,title,url,in_link_count,out_link_count,depth) select path,page,title,url,0,0,"
                  "depth from Page where url = '" + a + "'",
         "FAIL  one page per URL:", QString::fromStdString(a + ": 2 Page rows")},
        {"slash", "insert into Page(path,page,title,url,in_link_count,out_link_count,depth) values('/','a.html/','','" + a
                      + "/',0,0,2)",
         "FAIL  one page per URL:", QString::fromStdString(a + " and " + a + "/: two Page rows for one page")},
        {"dangling", "insert into Links(idt_page,idt_source,anchor,counter) values(9999,1,'nowhere',1)",
         "FAIL  links between pages:", "link from page 1 to page 9999 (\"nowhere\")"},
        {"undone", "update DownloaderQueue set perform_done = 0 where url = '" + a + "'",
         "FAIL  analysed pages:", QString::fromStdString(a + ": analysed, but no queue entry for it is marked done")},
        {"unreached", "delete from Links; delete from Page; delete from LinkHeaders; delete from DownloaderQueue where idt > 1",
         "FAIL  done entries:", QString::fromStdString(base.toStdString() + ": marked done, but neither its page nor its answer was recorded")},
    };
    for (const auto& damage : damages) {
        crawl(damage.project);
        ASSERT_TRUE(execute(database(damage.project), damage.sql)) << damage.sql;
        const CliResult r = run({"check", damage.project});
        EXPECT_EQ(r.exitCode, 5) << r.out.toStdString();
        EXPECT_TRUE(r.out.contains(damage.failure)) << r.out.toStdString();
        EXPECT_TRUE(r.out.contains(damage.detail)) << r.out.toStdString();
        EXPECT_TRUE(r.out.contains(QRegularExpression("Not sound: \\d of 7 checks fail.\n$"))) << r.out.toStdString();
    }

    // The registry's counters against a database they do not belong to: a count saved
    // before the last pages is only noted, a count or depth the queue cannot hold fails.
    crawl("source");
    ASSERT_EQ(run({"new", "counters", base}).exitCode, 0);
    QFile::remove(database("counters"));
    ASSERT_TRUE(QFile::copy(database("source"), database("counters")));
    // A database that does not keep its own count (made by an earlier version).
    ASSERT_TRUE(execute(database("counters"), "PRAGMA user_version = 0"));
    CliResult r = run({"check", "counters"});
    EXPECT_EQ(r.exitCode, 0) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("  ok    counters:")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("note: pages_count 0 is below the 6 analysed pages")) << r.out.toStdString();
    ASSERT_TRUE(execute(database("counters"), "delete from DownloaderQueue where depth > 1"));
    QFile::remove(database("source"));
    ASSERT_TRUE(QFile::copy(database("counters"), database("source")));
    r = run({"check", "source"});
    EXPECT_EQ(r.exitCode, 5) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("FAIL  counters:")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("pages_count 9 is not within the 1 queue entries")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("max_depth 3 is not the depth of a queue entry (deepest 1)")) << r.out.toStdString();
}

TEST_F(CheckCommand, AnIndexThatDisagreesWithItsTableFailsTheIntegrityCheck)
{
    // The index of pages by URL declared over their titles: its entries no longer match
    // the rows, which only the full integrity check reads.
    crawl("index");
    ASSERT_TRUE(execute(database("index"),
                        "pragma writable_schema = on; update sqlite_master set sql = 'CREATE INDEX PAGE_URL_IDX on "
                        "Page(title)' where name = 'PAGE_URL_IDX'"));
    const CliResult r = run({"check", "index"});
    EXPECT_EQ(r.exitCode, 5) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("FAIL  integrity:")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("PAGE_URL_IDX")) << r.out.toStdString();
}

TEST_F(CheckCommand, ADamagedFileIsRefusedAsDamaged)
{
    crawl("damaged");
    // Scribble over the index of pages by URL, leaving the file's header and schema whole.
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(database("damaged")).constData(), &db), SQLITE_OK);
    sqlite3_stmt* stmt = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db, "select rootpage from sqlite_master where name = 'PAGE_URL_IDX'", -1, &stmt, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(stmt), SQLITE_ROW);
    const int rootPage = sqlite3_column_int(stmt, 0);
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    QFile file(database("damaged"));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(qint64(rootPage - 1) * 4096 + 8));
    file.write(QByteArray(200, '\x5a'));
    file.close();

    const CliResult r = run({"check", "damaged"});
    EXPECT_EQ(r.exitCode, 2) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("the crawl database of 'damaged' is damaged")) << r.err.toStdString();
}

} // namespace
