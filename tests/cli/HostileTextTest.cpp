// Hostile text on its way out: control characters from a site (DEL and the C1 controls,
// CSI among them, which the HTML parser keeps in titles and anchors) are shown escaped wherever the command line prints text for a person, and
// stay as they are in CSV and JSON; credentials written into the project's URL appear in no
// report, no sitemap and no log.

#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class HostileText : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        server.setPage("/", "<html><head><title>\xc2\x9b""31mRed\xc2\x9d""0;owned\xc2\x9c \x7f\xc2\x9b""2J</title></head><body>"
                            "<a href=\"/a.html\">\xc2\x9b""2Jclear\x7f</a><a href=\"/gone.html\">gone</a>"
                            "<a href=\"/moved.html\">moved</a><a href=\"/js.html\">js</a></body></html>");
        server.setPage("/a.html", "<html><head><title>A</title></head><body></body></html>");
        server.setRedirect("/moved.html", "/a.html", 301);
        server.setRedirect("/js.html", "javascript:alert(1)", 302);
    }
    CliResult run(const QStringList& arguments) { return runCli(arguments, dir.path()); }
    void expectNoControls(const QString& text, const char* what)
    {
        for (QChar c : text) {
            const ushort u = c.unicode();
            const bool control = (u < 0x20 && u != '\n') || u == 0x7f || (u >= 0x80 && u <= 0x9f);
            EXPECT_FALSE(control) << what << ": raw control U+" << std::hex << u << " in\n" << text.toStdString();
            if (control)
                return;
        }
    }

    LocalHttpServer server;
    QTemporaryDir dir;
};

TEST_F(HostileText, ControlCharactersAreShownEscaped)
{
    ASSERT_EQ(run({"new", "site", QString::fromStdString(server.url("/"))}).exitCode, 0);
    const CliResult crawl = run({"crawl", "site"});
    ASSERT_EQ(crawl.exitCode, 0) << crawl.err.toStdString();
    expectNoControls(crawl.out, "crawl report");
    expectNoControls(crawl.err, "crawl progress");

    for (const char* format : {"table", "markdown"}) {
        const CliResult pages = run({"pages", "site", "--format", format});
        expectNoControls(pages.out, format);
        EXPECT_TRUE(pages.out.contains("\\x9b31mRed\\x9d0;owned\\x9c \\x7f\\x9b2J")) << pages.out.toStdString();
        const CliResult links = run({"links", "site", QString::fromStdString(server.url("/a.html")), "--format", format});
        expectNoControls(links.out, format);
        EXPECT_TRUE(links.out.contains("\\x9b2Jclear\\x7f")) << links.out.toStdString();
    }
    // The data formats stay faithful: CSV and JSON keep the characters.
    const QString title = QStringLiteral("\u009b31mRed\u009d0;owned\u009c \u007f\u009b2J");
    const CliResult csv = run({"pages", "site", "--format", "csv"});
    EXPECT_TRUE(csv.out.contains(title)) << csv.out.toStdString();
    const CliResult json = run({"pages", "site", "--format", "json"});
    bool found = false;
    for (const auto& p : QJsonDocument::fromJson(json.out.toUtf8()).array())
        found = found || p.toObject().value("title").toString() == title;
    EXPECT_TRUE(found) << json.out.toStdString();
}

TEST_F(HostileText, CredentialsInTheProjectURLAreNeverShown)
{
    const QString base = QString::fromStdString(server.baseUrl());
    const QString withCredentials = QString(base).replace("http://", "http://user:s3cret@");
    const CliResult made = run({"new", "site", withCredentials + "/"});
    ASSERT_EQ(made.exitCode, 0) << made.err.toStdString();
    QStringList shown{made.out, made.err};
    const CliResult crawl = run({"crawl", "site"});
    ASSERT_EQ(crawl.exitCode, 0) << crawl.err.toStdString();
    // The site was crawled with them: the server saw the pages.
    EXPECT_GE(server.requestCount(), 3u);
    shown << crawl.out << crawl.err;
    for (const QStringList& command :
         {QStringList{"projects"}, QStringList{"show", "site"}, QStringList{"broken", "site"},
          QStringList{"redirects", "site"}, QStringList{"links", "site", withCredentials + "/a.html"}}) {
        for (const char* format : {"table", "csv", "json", "markdown"}) {
            QStringList arguments = command;
            if (command.first() != "projects" && command.first() != "show")
                arguments << "--format" << format;
            const CliResult r = run(arguments);
            shown << r.out << r.err;
        }
    }
    for (const char* format : {"table", "csv", "json", "markdown"})
        shown << run({"pages", "site", "--format", format, "--columns", "url,title,error"}).out;
    // The reports still name the pages, the credentials masked.
    const CliResult pages = run({"pages", "site"});
    EXPECT_TRUE(pages.out.contains("http://***@" + base.mid(7) + "/a.html")) << pages.out.toStdString();
    const CliResult redirects = run({"redirects", "site", "--format", "json"});
    EXPECT_TRUE(redirects.out.contains("http://***@")) << redirects.out.toStdString();

    const QString sitemapFile = dir.path() + "/sitemap.xml";
    ASSERT_EQ(run({"sitemap", "site", "-o", sitemapFile}).exitCode, 0);
    QFile sitemap(sitemapFile);
    ASSERT_TRUE(sitemap.open(QIODevice::ReadOnly));
    const QString sitemapText = QString::fromUtf8(sitemap.readAll());
    EXPECT_TRUE(sitemapText.contains("<loc>" + base + "/a.html</loc>")) << sitemapText.toStdString();
    shown << sitemapText << run({"sitemap", "site"}).out;

    QFile errors(dir.path() + "/site_errors.log");
    ASSERT_TRUE(errors.open(QIODevice::ReadOnly));
    const QString errorsText = QString::fromUtf8(errors.readAll());
    EXPECT_TRUE(errorsText.contains("http://***@" + base.mid(7) + "/js.html")) << errorsText.toStdString();
    shown << errorsText;
    const QDir logs(dir.path() + "/Logs");
    for (const QString& name : logs.entryList(QDir::Files)) {
        QFile log(logs.filePath(name));
        if (log.open(QIODevice::ReadOnly))
            shown << QString::fromUtf8(log.readAll());
    }

    for (const QString& text : shown)
        EXPECT_FALSE(text.contains("s3cret")) << text.toStdString();
}

} // namespace
