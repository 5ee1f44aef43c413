#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

std::string page(const std::string& title, const std::string& body, const std::string& head = "")
{
    return "<html><head><title>" + title + "</title>" + head + "</head><body>" + body + "</body></html>";
}

// Every row of a statement on the crawl database, columns joined by "|".
QStringList rowsOf(const QString& file, const char* sql)
{
    QStringList rows;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK)
        return rows;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) == SQLITE_OK) {
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            QStringList columns;
            for (int c = 0; c < sqlite3_column_count(stmt); ++c) {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(stmt, c));
                columns << (text ? QString::fromUtf8(text) : QStringLiteral("NULL"));
            }
            rows << columns.join('|');
        }
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return rows;
}

class ReportLanguage : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
        server.setPage("/", page("Home", "<a href=\"/a.html\">A</a><a href=\"/caf%C3%A9 x.html\">Café</a>"
                                         "<a href=\"/gone.html\">Gone</a>"));
        server.setPage("/a.html", page("A", "<a href=\"/\">home</a><a href=\"/gone.html\">gone again</a>"));
        server.setPage("/café x.html", page("Café", "<a href=\"/a.html\">A</a>"));
        server.setPage("/gone.html", page("Gone", ""), "text/html", 404);
    }

    CliResult run(const QStringList& args, const QString& dataDir, const QMap<QString, QString>& env = {})
    {
        return runCli(args, dataDir, 60000, QByteArray(), env);
    }

    LocalHttpServer server;
    QString base;
};

const QMap<QString, QString> kFrench{{"LANG", "fr_FR.UTF-8"}};

TEST_F(ReportLanguage, AFrenchLocaleGetsFrenchAndTheDatabaseStaysTheSame)
{
    QTemporaryDir english, french;
    ASSERT_EQ(run({"new", "site", base}, english.path()).exitCode, 0);
    ASSERT_EQ(run({"new", "site", base}, french.path(), kFrench).exitCode, 0);
    const CliResult en = run({"crawl", "site"}, english.path());
    const CliResult fr = run({"crawl", "site"}, french.path(), kFrench);
    ASSERT_EQ(en.exitCode, 0) << en.err.toStdString();
    ASSERT_EQ(fr.exitCode, 0) << fr.err.toStdString();
    EXPECT_TRUE(en.out.contains("Pages analysed: 4")) << en.out.toStdString();
    EXPECT_TRUE(fr.out.contains("Pages analysées : 4")) << fr.out.toStdString();
    EXPECT_TRUE(fr.out.contains("Liens cassés :")) << fr.out.toStdString();
    EXPECT_FALSE(fr.out.contains("Pages analysed"));

    // What the crawl stores does not follow the command line's language: the same titles
    // (the French text of a page without HTML among them) in both databases.
    const char* pages = "select path,page,title,url,is_no_index,is_no_follow,is_canonical,in_link_count,"
                        "out_link_count,depth,weight from Page order by idt";
    const QStringList enPages = rowsOf(english.path() + "/site.sqlite", pages);
    ASSERT_EQ(enPages.size(), 4);
    EXPECT_EQ(enPages, rowsOf(french.path() + "/site.sqlite", pages));
    EXPECT_TRUE(enPages.join('\n').contains("Erreur 404 ou contenu non HTML")) << enPages.join('\n').toStdString();

    // Column titles and the list's title in one language per run.
    CliResult r = run({"links", "site", base + "/a.html"}, english.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    QStringList lines = r.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines[0], QStringLiteral("2 links to %1/a.html").arg(base));
    EXPECT_TRUE(lines[1].startsWith("Anchor")) << lines[1].toStdString();
    EXPECT_TRUE(lines[1].contains("Linking page"));
    r = run({"links", "site", base + "/a.html"}, english.path(), kFrench);
    lines = r.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_EQ(lines[0], QStringLiteral("2 liens vers %1/a.html").arg(base));
    EXPECT_TRUE(lines[1].startsWith("Ancre")) << lines[1].toStdString();
    EXPECT_TRUE(lines[1].contains("Page qui fait le lien"));

    r = run({"pages", "site"}, english.path(), {{"LC_ALL", "fr_FR.UTF-8"}});
    // The 404 page answered with HTML: the documents list shows it.
    EXPECT_TRUE(r.out.startsWith(QStringLiteral("4 documents référencés\n"))) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("Profondeur"));
    EXPECT_TRUE(r.out.contains("Statut"));
    r = run({"broken", "site"}, english.path(), {{"LC_MESSAGES", "fr_FR.UTF-8"}});
    EXPECT_TRUE(r.out.contains("URL cassée")) << r.out.toStdString();
    r = run({"broken", "site"}, english.path(), {{"LC_ALL", "C"}, {"LANG", "fr_FR.UTF-8"}});
    EXPECT_TRUE(r.out.contains("Broken URL")) << "LC_ALL comes first: " << r.out.toStdString();

    // Errors and help too.
    r = run({"pages", "site", "--format", "xml"}, english.path(), kFrench);
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("n'est pas un format")) << r.err.toStdString();
    r = run({"pages", "--help"}, QString(), kFrench);
    EXPECT_TRUE(r.out.contains("la page de départ est à la profondeur 1")) << r.out.toStdString();
    r = run({"pages", "--help"}, QString());
    EXPECT_TRUE(r.out.contains("the start page is depth 1")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("links received divided by depth"));
}

TEST_F(ReportLanguage, PagesChooseTheirColumnsAndTheirOrder)
{
    QTemporaryDir dir;
    ASSERT_EQ(run({"new", "site", base}, dir.path()).exitCode, 0);
    ASSERT_EQ(run({"crawl", "site"}, dir.path()).exitCode, 0);

    CliResult r = run({"pages", "site", "--filter", "404", "--columns", "url,status,error", "--format", "json"}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    QJsonArray rows = QJsonDocument::fromJson(r.out.toUtf8()).array();
    ASSERT_EQ(rows.size(), 1) << r.out.toStdString();
    EXPECT_EQ(rows[0].toObject().keys(), (QStringList{"error", "status", "url"}));
    EXPECT_EQ(rows[0].toObject().value("status").toInt(), 404);
    EXPECT_TRUE(rows[0].toObject().value("error").isNull());

    r = run({"pages", "site", "--columns", "url,inLinkCount,responseMs", "--sort", "inLinkCount:desc", "--format", "json"},
            dir.path());
    rows = QJsonDocument::fromJson(r.out.toUtf8()).array();
    ASSERT_EQ(rows.size(), 4) << r.out.toStdString();
    // Two links received each, a.html found first.
    EXPECT_EQ(rows[0].toObject().value("url").toString(), base + "/a.html");
    EXPECT_EQ(rows[1].toObject().value("url").toString(), base + "/gone.html");
    EXPECT_GE(rows[0].toObject().value("responseMs").toInt(-1), 0);
    for (int i = 1; i < rows.size(); ++i)
        EXPECT_GE(rows[i - 1].toObject().value("inLinkCount").toInt(), rows[i].toObject().value("inLinkCount").toInt());

    r = run({"pages", "site", "--columns", "url", "--sort", "url", "--format", "csv"}, dir.path());
    // A page's URL is kept as its link wrote it.
    EXPECT_EQ(r.out, QStringLiteral("url\r\n%1\r\n%1/a.html\r\n%1/caf%C3%A9 x.html\r\n%1/gone.html\r\n").arg(base))
        << r.out.toStdString();

    r = run({"pages", "site", "--columns", "url,colour"}, dir.path());
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("'colour' is not a column")) << r.err.toStdString();
    EXPECT_EQ(run({"pages", "site", "--sort", "size"}, dir.path()).exitCode, 2);
}

TEST_F(ReportLanguage, LinksFindsAURLTypedWithOrWithoutItsEscapes)
{
    QTemporaryDir dir;
    ASSERT_EQ(run({"new", "site", base}, dir.path()).exitCode, 0);
    ASSERT_EQ(run({"crawl", "site"}, dir.path()).exitCode, 0);
    for (const QString& typed : {base + "/caf%C3%A9%20x.html", base + "/café x.html", base + "/caf%C3%A9 x.html",
                                 base + "/caf%c3%a9%20x.html", base + "/café%20x.html"}) {
        const CliResult r = run({"links", "site", typed, "--format", "json"}, dir.path());
        ASSERT_EQ(r.exitCode, 0) << typed.toStdString() << ": " << r.err.toStdString();
        const QJsonArray links = QJsonDocument::fromJson(r.out.toUtf8()).array();
        ASSERT_EQ(links.size(), 1) << typed.toStdString();
        EXPECT_EQ(links[0].toObject().value("anchor").toString(), "Café");
    }
}

TEST(DemoCommand, ServesOnThePortAsked)
{
    QTemporaryDir dir;
    int port = 0;
    {
        LocalHttpServer probe;
        ASSERT_TRUE(probe.start());
        port = probe.port();
    }
    CliResult r = runCli({"demo", "--port", QString::number(port)}, dir.path());
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(QStringLiteral("Demo site served at http://127.0.0.1:%1").arg(port))) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(QStringLiteral("Crawl of 'demo' (http://127.0.0.1:%1)").arg(port))) << r.out.toStdString();

    LocalHttpServer busy;
    ASSERT_TRUE(busy.start());
    r = runCli({"demo", "--port", QString::number(busy.port())}, dir.path());
    EXPECT_EQ(r.exitCode, 1);
    EXPECT_TRUE(r.err.contains("is the port in use?")) << r.err.toStdString();
    EXPECT_EQ(runCli({"demo", "--port", "http"}, dir.path()).exitCode, 2);
}

} // namespace
