#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include "CsvParser.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <chrono>
#include <thread>

namespace {

std::string page(const std::string& title, const std::string& body, const std::string& head = "")
{
    return "<html><head><title>" + title + "</title>" + head + "</head><body>" + body + "</body></html>";
}

std::string link(const std::string& href, const std::string& anchor)
{
    return "<a href=\"" + href + "\">" + anchor + "</a> ";
}

// A port nothing listens on: a server's, once it has stopped.
int closedPort()
{
    LocalHttpServer probe;
    if (!probe.start())
        return 1;
    const int port = probe.port();
    probe.stop();
    return port;
}

// What xmllint says of a file against one of the schemas kept beside the tests; empty when
// it validates.
QString schemaErrors(const QString& file, const QString& schema)
{
    QProcess xmllint;
    xmllint.start(QStringLiteral("xmllint"),
                  {QStringLiteral("--noout"), QStringLiteral("--schema"),
                   QStringLiteral(QUILLMERE_SOURCE_DIR "/tests/cli/data/") + schema, file});
    if (!xmllint.waitForFinished(60000))
        return QStringLiteral("xmllint did not finish");
    if (xmllint.exitCode() == 0)
        return QString();
    return QString::fromUtf8(xmllint.readAllStandardError()) + QStringLiteral(" (exit %1)").arg(xmllint.exitCode());
}

// A site with every kind of trouble a link checker meets: 404, 500, a refused connection, a
// time-out, redirect chains of 1, 2 and 20 hops, noindex and canonical pages, a picture.
class AuditCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
        dead = QStringLiteral("http://127.0.0.1:%1/nowhere.html").arg(closedPort());
        std::string home = link("/ok.html", "Fine") + link("/missing.html", "Missing, \"quoted\"")
                           + link("/error.html", "Server error") + link("/dead.html", "Dead host")
                           + link("/slow.html", "Slow") + link("/r1.html", "One hop") + link("/r2a.html", "Two hops")
                           + link("/c0.html", "Twenty hops") + link("/noindex.html", "Hidden")
                           + link("/canon.html", "Copy") + link("/img.png", "Picture");
        server.setPage("/", page("Home", home));
        server.setPage("/ok.html", page("OK", link("/missing.html", "again") + link("/", "home")));
        server.setPage("/ok2.html", page("OK 2", link("/", "home")));
        server.setPage("/missing.html", page("Not found", ""), "text/html", 404);
        server.setPage("/error.html", page("Oops", ""), "text/html", 500);
        server.setRedirect("/dead.html", dead.toStdString(), 302);
        server.route("/slow.html", [](const HttpRequest&, HttpResponse& response) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2500));
            response.setContent(page("Slow", ""), "text/html");
        });
        server.setRedirect("/r1.html", "/ok.html", 301);
        server.setRedirect("/r2a.html", "/r2b.html", 302);
        server.setRedirect("/r2b.html", "/ok2.html", 307);
        for (int i = 0; i < 20; ++i)
            server.setRedirect("/c" + std::to_string(i) + ".html", "/c" + std::to_string(i + 1) + ".html", 301);
        server.setPage("/c20.html", page("End of the chain", ""));
        server.setPage("/noindex.html", page("Hidden", link("/ok.html", "ok"), "<meta name=\"robots\" content=\"noindex\">"));
        server.setPage("/canon.html", page("Copy", "", "<link rel=\"canonical\" href=\"http://elsewhere.example/c\">"));
        server.setPage("/img.png", "\x89PNG....", "image/png");
    }

    CliResult run(const QStringList& args, const QMap<QString, QString>& env = {})
    {
        return runCli(args, dir.path(), 120000, QByteArray(), env);
    }

    // Creates and crawls the project; answers the crawl's result.
    CliResult crawl(const QStringList& extra = {})
    {
        EXPECT_EQ(run({"new", "site", base}).exitCode, 0);
        return run(QStringList{"crawl", "site", "--timeout", "1"} + extra);
    }

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
    QString dead;  // where dead.html redirects: a port nothing listens on
};

TEST_F(AuditCommands, BrokenListsEveryBrokenTargetWithThePagesThatLinkToIt)
{
    const CliResult c = crawl();
    ASSERT_EQ(c.exitCode, 0) << c.err.toStdString();
    // 404 twice (from home and ok.html), 500, refused, time-out.
    EXPECT_TRUE(c.out.contains("Broken links:   5 (to 4 URLs)")) << c.out.toStdString();

    CliResult r = run({"broken", "site", "--format", "csv"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    QString csvError;
    const QList<QStringList> rows = CsvParser::parse(r.out, &csvError);
    ASSERT_TRUE(csvError.isEmpty()) << csvError.toStdString() << "\n" << r.out.toStdString();
    // dead.html's redirect target, on a server that refuses, was fetched too: broken, linked
    // from no page.
    ASSERT_EQ(rows.size(), 7) << r.out.toStdString();
    EXPECT_EQ(rows[0], (QStringList{"url", "status", "sourceUrl", "anchor"}));
    QMap<QString, QString> statusOf;
    QStringList missingSources;
    for (int i = 1; i < rows.size(); ++i) {
        ASSERT_EQ(rows[i].size(), 4);
        statusOf[rows[i][0]] = rows[i][1];
        if (rows[i][0] == base + "/missing.html")
            missingSources << rows[i][2] + " " + rows[i][3];
    }
    EXPECT_EQ(statusOf.value(base + "/missing.html"), "404");
    EXPECT_EQ(statusOf.value(base + "/error.html"), "500");
    EXPECT_EQ(statusOf.value(base + "/dead.html"), "refused");
    EXPECT_EQ(statusOf.value(base + "/slow.html"), "timeout");
    EXPECT_EQ(statusOf.size(), 5);
    EXPECT_EQ(statusOf.value(dead), "refused");
    EXPECT_EQ(missingSources, (QStringList{base + " Missing, \"quoted\"", base + "/ok.html again"}));

    r = run({"broken", "site", "--format", "json"});
    ASSERT_EQ(r.exitCode, 0);
    QJsonParseError parseError;
    const QJsonArray targets = QJsonDocument::fromJson(r.out.toUtf8(), &parseError).array();
    ASSERT_EQ(parseError.error, QJsonParseError::NoError) << r.out.toStdString();
    ASSERT_EQ(targets.size(), 5);
    for (const auto& value : targets) {
        const QJsonObject t = value.toObject();
        if (t.value("url").toString() == base + "/missing.html") {
            EXPECT_EQ(t.value("status").toInt(), 404);
            EXPECT_TRUE(t.value("error").isNull());
            EXPECT_EQ(t.value("linkedFrom").toArray().size(), 2);
            EXPECT_EQ(t.value("linkedFrom").toArray()[1].toObject().value("anchor").toString(), "again");
        }
        if (t.value("url").toString() == base + "/dead.html") {
            EXPECT_TRUE(t.value("status").isNull());
            EXPECT_EQ(t.value("error").toString(), "refused");
        }
    }

    r = run({"broken", "site"});
    EXPECT_TRUE(r.out.startsWith("Broken URLs: 5, links to them: 5\n")) << r.out.toStdString();
    r = run({"broken", "site", "--format", "markdown"});
    const QStringList md = r.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(md.size(), 8) << r.out.toStdString();
    EXPECT_EQ(md[0], "| Broken URL | Status | Linking page | Anchor |");
    EXPECT_EQ(md[1], "| --- | --- | --- | --- |");
}

// The pages linking to a broken target come by counter, then anchor, then linking page, then
// in the order the links were recorded.
TEST(AuditListingOrder, LinksToABrokenTargetComeByCounterAnchorLinkingPageThenAsRecorded)
{
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    QTemporaryDir dir;
    const QString base = QString::fromStdString(server.baseUrl());
    // Recorded b, a, c, then d twice: a, b and c each have one link in, d has two.
    server.setPage("/", page("Home", link("/p/b.html", "b") + link("/p/a.html", "a") + link("/p/c.html", "c")
                                         + link("/p/d.html", "d")));
    server.setPage("/p/b.html", page("B", link("/missing.html", "same") + link("/p/d.html", "d")));
    server.setPage("/p/a.html", page("A", link("/missing.html", "same")));
    server.setPage("/p/c.html", page("C", link("/missing.html", "other")));
    server.setPage("/p/d.html", page("D", link("/missing.html", "twice") + link("/missing.html", "twice")));
    server.setPage("/missing.html", page("Gone", ""), "text/html", 404);
    ASSERT_EQ(runCli({"new", "site", base}, dir.path()).exitCode, 0);
    ASSERT_EQ(runCli({"crawl", "site"}, dir.path()).exitCode, 0);
    const CliResult r = runCli({"broken", "site", "--format", "csv"}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    QString csvError;
    const QList<QStringList> rows = CsvParser::parse(r.out, &csvError);
    ASSERT_TRUE(csvError.isEmpty()) << csvError.toStdString();
    QStringList order;
    for (int i = 1; i < rows.size(); ++i)
        order << rows[i][2].mid(base.size()) + " " + rows[i][3];
    EXPECT_EQ(order, (QStringList{"/p/c.html other", "/p/a.html same", "/p/b.html same", "/p/d.html twice",
                                  "/p/d.html twice"}))
        << r.out.toStdString();
}

TEST_F(AuditCommands, FailOnBrokenExitsWithFour)
{
    CliResult r = crawl({"--fail-on-broken"});
    EXPECT_EQ(r.exitCode, 4) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Broken links:   5 (to 4 URLs)")) << r.out.toStdString();
    EXPECT_TRUE(r.err.contains("5 broken internal links (to 4 URLs) found")) << r.err.toStdString();
    // Without the option, the same findings leave the status alone.
    r = run({"crawl", "site", "--restart", "--timeout", "1"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
}

TEST_F(AuditCommands, FailOnBrokenPassesASoundSite)
{
    server.setPage("/", page("Home", link("/ok.html", "Fine") + link("/r1.html", "One hop")));
    server.setPage("/ok.html", page("OK", link("/", "home")));
    const CliResult r = crawl({"--fail-on-broken"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Broken links:   0 (to 0 URLs)")) << r.out.toStdString();
}

TEST_F(AuditCommands, RedirectsShowEachChainAndItsFinalTarget)
{
    ASSERT_EQ(crawl().exitCode, 0);
    CliResult r = run({"redirects", "site", "--format", "json"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    QJsonParseError parseError;
    const QJsonArray redirects = QJsonDocument::fromJson(r.out.toUtf8(), &parseError).array();
    ASSERT_EQ(parseError.error, QJsonParseError::NoError) << r.out.toStdString();
    QMap<QString, QJsonObject> byUrl;
    for (const auto& v : redirects)
        byUrl[v.toObject().value("url").toString()] = v.toObject();
    // dead.html redirects too, to a server that refuses.
    EXPECT_EQ(byUrl.keys(), (QStringList{base + "/c0.html", base + "/dead.html", base + "/r1.html", base + "/r2a.html"}));

    const QJsonObject one = byUrl.value(base + "/r1.html");
    ASSERT_EQ(one.value("chain").toArray().size(), 1);
    EXPECT_EQ(one.value("chain").toArray()[0].toObject().value("status").toInt(), 301);
    EXPECT_EQ(one.value("finalUrl").toString(), base + "/ok.html");
    EXPECT_EQ(one.value("status").toInt(), 200);
    ASSERT_EQ(one.value("linkedFrom").toArray().size(), 1);
    EXPECT_EQ(one.value("linkedFrom").toArray()[0].toObject().value("anchor").toString(), "One hop");

    const QJsonArray two = byUrl.value(base + "/r2a.html").value("chain").toArray();
    ASSERT_EQ(two.size(), 2);
    EXPECT_EQ(two[0].toObject().value("url").toString(), base + "/r2a.html");
    EXPECT_EQ(two[0].toObject().value("status").toInt(), 302);
    EXPECT_EQ(two[1].toObject().value("url").toString(), base + "/r2b.html");
    EXPECT_EQ(two[1].toObject().value("status").toInt(), 307);
    EXPECT_EQ(byUrl.value(base + "/r2a.html").value("finalUrl").toString(), base + "/ok2.html");

    const QJsonObject twenty = byUrl.value(base + "/c0.html");
    EXPECT_EQ(twenty.value("chain").toArray().size(), 20);
    EXPECT_EQ(twenty.value("finalUrl").toString(), base + "/c20.html");
    EXPECT_EQ(twenty.value("status").toInt(), 200);

    r = run({"redirects", "site", "--format", "csv"});
    QString csvError;
    const QList<QStringList> rows = CsvParser::parse(r.out, &csvError);
    ASSERT_TRUE(csvError.isEmpty()) << csvError.toStdString();
    ASSERT_EQ(rows.size(), 5);
    EXPECT_EQ(rows[0], (QStringList{"url", "hops", "chain", "finalUrl", "status", "sourceUrl", "anchor"}));
    for (const auto& row : rows.mid(1)) {
        if (row[0] == base + "/r2a.html") {
            EXPECT_EQ(row[1], "2");
            EXPECT_EQ(row[2], QStringLiteral("%1/r2a.html (302) -> %1/r2b.html (307) -> %1/ok2.html (200)").arg(base));
        }
    }
}

TEST_F(AuditCommands, TheSitemapListsTheIndexablePagesAndValidates)
{
    ASSERT_EQ(crawl().exitCode, 0);
    const QString file = dir.path() + "/sitemap.xml";
    CliResult r = run({"sitemap", "site", "-o", file});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(schemaErrors(file, "sitemap.xsd").isEmpty()) << schemaErrors(file, "sitemap.xsd").toStdString();
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::ReadOnly));
    const QString xml = QString::fromUtf8(f.readAll());
    for (const char* path : {"/", "/ok.html", "/ok2.html", "/c20.html"})
        EXPECT_TRUE(xml.contains("<loc>" + base + path + "</loc>")) << path << "\n" << xml.toStdString();
    for (const char* path : {"/noindex.html", "/canon.html", "/missing.html", "/error.html", "/r1.html", "/img.png",
                             "/slow.html", "/dead.html"})
        EXPECT_FALSE(xml.contains(base + path + "<")) << path;
    EXPECT_EQ(xml.count("<url>"), 4);

    // On standard output, the same document.
    r = run({"sitemap", "site"});
    EXPECT_EQ(r.out, xml);
}

// A crawl database of 50,001 analysed pages, made with SQL: the sitemap becomes an index
// and two files, each valid.
TEST(Sitemap, PastFiftyThousandURLsAnIndexNamesTheFiles)
{
    QTemporaryDir dir;
    ASSERT_EQ(runCli({"new", "big", "http://big.example/"}, dir.path()).exitCode, 0);
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open((dir.path() + "/big.sqlite").toUtf8().constData(), &db), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(db, "begin", nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_stmt* insert = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(db,
                                 "insert into Page(path,page,title,url,is_no_index,is_no_follow,is_canonical,"
                                 "in_link_count,out_link_count,depth,weight) values('/',?1,'P',?2,0,0,0,1,1,2,0.5)",
                                 -1, &insert, nullptr),
              SQLITE_OK);
    for (int i = 0; i < 50003; ++i) {
        const std::string name = "p" + std::to_string(i) + ".html";
        const std::string url = "http://big.example/" + name + "?a=1&b=2";
        sqlite3_bind_text(insert, 1, name.c_str(), -1, SQLITE_TRANSIENT);
        sqlite3_bind_text(insert, 2, url.c_str(), -1, SQLITE_TRANSIENT);
        ASSERT_EQ(sqlite3_step(insert), SQLITE_DONE);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    // Two pages whose last fetch failed, which stay out.
    ASSERT_EQ(sqlite3_exec(db,
                           "insert into FetchLog values('http://big.example/p7.html?a=1&b=2','',404,'','',3,0,'[]','');"
                           "insert into FetchLog values('http://big.example/p8.html?a=1&b=2','',0,'timeout','',3,0,'[]','');"
                           "commit",
                           nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(db);

    // Standard output holds one file only.
    CliResult r = runCli({"sitemap", "big"}, dir.path());
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("50001 URLs do not fit in one sitemap")) << r.err.toStdString();
    EXPECT_TRUE(r.out.isEmpty());

    const QString index = dir.path() + "/out/sitemap.xml";
    ASSERT_TRUE(QDir().mkpath(dir.path() + "/out"));
    r = runCli({"sitemap", "big", "-o", index}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("Wrote 50001 URLs: the index " + index + " and 2 sitemap files")) << r.err.toStdString();
    EXPECT_TRUE(schemaErrors(index, "siteindex.xsd").isEmpty()) << schemaErrors(index, "siteindex.xsd").toStdString();
    QFile indexFile(index);
    ASSERT_TRUE(indexFile.open(QIODevice::ReadOnly));
    const QString indexXml = QString::fromUtf8(indexFile.readAll());
    EXPECT_TRUE(indexXml.contains("<loc>http://big.example/sitemap-1.xml</loc>")) << indexXml.toStdString();
    EXPECT_TRUE(indexXml.contains("<loc>http://big.example/sitemap-2.xml</loc>"));
    int urls = 0;
    for (const char* part : {"/out/sitemap-1.xml", "/out/sitemap-2.xml"}) {
        const QString file = dir.path() + part;
        EXPECT_TRUE(schemaErrors(file, "sitemap.xsd").isEmpty()) << part << schemaErrors(file, "sitemap.xsd").toStdString();
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::ReadOnly));
        const QString xml = QString::fromUtf8(f.readAll());
        EXPECT_LE(xml.count("<url>"), 50000);
        urls += xml.count("<url>");
        EXPECT_FALSE(xml.contains("p7.html")) << part;
        if (QString(part).endsWith("1.xml"))
            EXPECT_TRUE(xml.contains("<loc>http://big.example/p0.html?a=1&amp;b=2</loc>"));
    }
    EXPECT_EQ(urls, 50001);
}

} // namespace
