#include "support/CliRunner.h"
#include "support/LocalHttpServer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <thread>

#include <unistd.h>

namespace {

std::string page(const std::string& title, const std::string& body, const std::string& head = "")
{
    return "<html><head><title>" + title + "</title>" + head + "</head><body>" + body + "</body></html>";
}

// A ten-page site: the home page links to p1..p9, each linking back home.
void tenPageSite(LocalHttpServer& server)
{
    std::string links;
    for (int i = 1; i <= 9; ++i)
        links += "<a href=\"/p" + std::to_string(i) + ".html\">Page " + std::to_string(i) + "</a>";
    server.setPage("/", page("Home", links));
    for (int i = 1; i <= 9; ++i)
        server.setPage("/p" + std::to_string(i) + ".html", page("P" + std::to_string(i), "<a href=\"/\">home</a>"));
}

int requestsFor(const LocalHttpServer& server, const std::string& path)
{
    int n = 0;
    for (const auto& r : server.requests())
        if (r.path == path)
            ++n;
    return n;
}

class CrawlCommands : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(server.start());
        base = QString::fromStdString(server.baseUrl());
    }
    CliResult run(const QStringList& args) { return runCli(args, dir.path()); }
    void stopAtOnceThenContinue(int parallel);

    QTemporaryDir dir;
    LocalHttpServer server;
    QString base;
};

TEST_F(CrawlCommands, CrawlPrintsTheReportAndProgress)
{
    tenPageSite(server);
    server.setPage("/p3.html", page("Hidden", "<a href=\"/\">home</a>", "<meta name=\"robots\" content=\"noindex\">"));
    server.setPage("/p4.html", page("Copy", "", "<link rel=\"canonical\" href=\"http://elsewhere.example/p4\">"));
    server.setPage("/p5.html", "gone", "text/html", 404);
    ASSERT_EQ(run({"new", "site", base}).exitCode, 0);
    const CliResult r = run({"crawl", "site"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Pages analysed: 10 (this run: 10)")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("Deepest depth:  2"));
    EXPECT_TRUE(r.out.contains("Queue:          10 done, 0 waiting"));
    EXPECT_TRUE(r.out.contains("404, all types:  1"));
    EXPECT_TRUE(r.out.contains("noindex:         1"));
    EXPECT_TRUE(r.out.contains("canonical:       1"));
    EXPECT_TRUE(r.out.contains("Top 8 pages by weight:")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("pages/s"));
    // Progress goes to standard error, as plain lines when it is not a terminal.
    EXPECT_TRUE(r.err.contains("pages  depth")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("waiting /"));
    EXPECT_FALSE(r.out.contains("waiting /"));

    const CliResult show = run({"show", "site"});
    EXPECT_EQ(show.exitCode, 0);
    EXPECT_TRUE(show.out.contains("Pages crawled:  10"));
    EXPECT_TRUE(QRegularExpression("Last crawl:     \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d to \\d{4}").match(show.out).hasMatch())
        << show.out.toStdString();
}

TEST_F(CrawlCommands, ACrawledProjectNeedsAFlag)
{
    tenPageSite(server);
    ASSERT_EQ(run({"new", "site", base}).exitCode, 0);
    ASSERT_EQ(run({"crawl", "site"}).exitCode, 0);
    const size_t requests = server.requestCount();

    CliResult r = run({"crawl", "site"});  // standard input is not a terminal here
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("--restart")) << r.err.toStdString();
    r = run({"crawl", "site", "--continue"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("nothing waits"));
    r = run({"crawl", "site", "--continue", "--restart"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_EQ(server.requestCount(), requests);  // refusals fetch nothing

    r = run({"crawl", "site", "--restart"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Pages analysed: 10 (this run: 10)"));
    EXPECT_EQ(requestsFor(server, "/p1.html"), 2);
}

TEST_F(CrawlCommands, APageLimitLeavesWorkForContinue)
{
    tenPageSite(server);
    ASSERT_EQ(run({"new", "site", base, "--pages", "3"}).exitCode, 0);
    CliResult r = run({"crawl", "site"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Pages analysed: 4 (this run: 4)")) << r.out.toStdString();
    EXPECT_TRUE(r.out.contains("Queue:          4 done, 6 waiting"));

    r = run({"crawl", "site"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("--continue"));
    EXPECT_TRUE(r.err.contains("--restart"));

    // The stored count is already past the limit: a continued crawl stops before its first page.
    r = run({"crawl", "site", "--continue"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_TRUE(r.out.contains("(this run: 0)")) << r.out.toStdString();
    EXPECT_EQ(requestsFor(server, "/p5.html"), 0);
}

// Ctrl-C during a crawl of slow pages, then --continue; `parallel` requests in flight.
void CrawlCommands::stopAtOnceThenContinue(int parallel)
{
    const QString inFlight = QString::number(parallel);
    tenPageSite(server);
    for (int i = 1; i <= 9; ++i) {
        const std::string path = "/p" + std::to_string(i) + ".html";
        server.route(path, [](const HttpRequest&, HttpResponse& response) {
            std::this_thread::sleep_for(std::chrono::milliseconds(150));
            response.setContent("<html><head><title>Slow</title></head><body><a href=\"/\">home</a></body></html>",
                                "text/html");
        });
    }
    ASSERT_EQ(run({"new", "slow", base}).exitCode, 0);

    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QUILLMERE_TRACE", "0");
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(QUILLMERE_CLI_PATH), {"--data-dir", dir.path(), "crawl", "slow", "--parallel", inFlight});
    ASSERT_TRUE(process.waitForStarted());
    // Wait until the crawl is inside the slow pages.
    for (int i = 0; i < 200 && requestsFor(server, "/p2.html") == 0; ++i)
        QThread::msleep(10);
    ASSERT_EQ(requestsFor(server, "/p2.html"), 1);
    ::kill(pid_t(process.processId()), SIGINT);
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 130);
    const QString out = QString::fromUtf8(process.readAllStandardOutput());
    const QString err = QString::fromUtf8(process.readAllStandardError());
    EXPECT_TRUE(out.contains("stopped")) << out.toStdString();
    EXPECT_TRUE(err.contains("stopping")) << err.toStdString();
    EXPECT_LT(requestsFor(server, "/p9.html"), 1);

    const CliResult show = run({"show", "slow"});
    EXPECT_FALSE(show.out.contains(" 0 waiting")) << show.out.toStdString();

    const CliResult again = run({"crawl", "slow", "--continue", "--parallel", inFlight});
    EXPECT_EQ(again.exitCode, 0) << again.err.toStdString();
    EXPECT_TRUE(again.out.contains("0 waiting")) << again.out.toStdString();
    // Nothing was lost: the pages whose transfers the stop abandoned (at most one per request
    // in flight) were fetched again, every other page once.
    int fetchedTwice = 0;
    for (int i = 1; i <= 9; ++i) {
        const int n = requestsFor(server, "/p" + std::to_string(i) + ".html");
        EXPECT_TRUE(n == 1 || n == 2) << i << ": " << n;
        fetchedTwice += n == 2 ? 1 : 0;
    }
    EXPECT_LE(fetchedTwice, parallel);
    EXPECT_TRUE(again.out.contains("Pages analysed: 10 ")) << again.out.toStdString();
    const CliResult pages = run({"pages", "slow", "--format", "json"});
    EXPECT_EQ(QJsonDocument::fromJson(pages.out.toUtf8()).array().size(), 10) << pages.out.toStdString();
}

TEST_F(CrawlCommands, CtrlCStopsAtOnceAndContinueFinishes)
{
    stopAtOnceThenContinue(1);
}

TEST_F(CrawlCommands, CtrlCStopsAtOnceWithPagesFetchedAheadAndContinueFinishes)
{
    stopAtOnceThenContinue(4);
}

TEST_F(CrawlCommands, AStartURLThatDoesNotMatchItsLinksEndsWithStatus3)
{
    const std::string precomposed = "/caf\xC3\xA9";
    const std::string decomposed = "/cafe\xCC\x81";
    server.setPage(precomposed, page("Cafe", "<a href=\"" + server.baseUrl() + decomposed + "\">same place</a>"));
    ASSERT_EQ(run({"new", "cafe", base + QString::fromUtf8(precomposed.c_str())}).exitCode, 0);
    const CliResult r = run({"crawl", "cafe"});
    EXPECT_EQ(r.exitCode, 3) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.err.contains(QStringLiteral("Attention les URL trouvées dans les pages ne correspondent pas a celle du projet")))
        << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("ended on an error"));
}

TEST_F(CrawlCommands, BadProjectsAreRefusedAndLeftAlone)
{
    CliResult r = run({"crawl", "nobody"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("no project named 'nobody'"));

    ASSERT_EQ(run({"new", "broken", base}).exitCode, 0);
    QFile db(dir.path() + "/broken.sqlite");
    ASSERT_TRUE(db.open(QIODevice::WriteOnly | QIODevice::Truncate));
    db.write(QByteArray(3000, 'x'));
    db.close();
    for (const QStringList& args : QList<QStringList>{{"crawl", "broken"}, {"pages", "broken"}, {"show", "broken"},
                                                      {"vacuum", "broken"}, {"links", "broken", base}}) {
        r = run(args);
        EXPECT_EQ(r.exitCode, 2) << args.join(' ').toStdString();
        EXPECT_TRUE(r.err.contains("cannot be read")) << r.err.toStdString();
    }
    EXPECT_EQ(QFileInfo(db.fileName()).size(), 3000);
    EXPECT_EQ(server.requestCount(), 0u);
}

TEST_F(CrawlCommands, PagesAndLinksInEveryFormat)
{
    server.setPage("/", page("Home, \"sweet\" home", "<a href=\"/a.html\">First, \"quoted\"</a><a href=\"/a.html\">Second</a>"));
    server.setPage("/a.html", page("A", "<a href=\"/\">back</a>"));
    server.setPage("/n.html", page("N", ""));
    ASSERT_EQ(run({"new", "fmt", base}).exitCode, 0);
    ASSERT_EQ(run({"crawl", "fmt"}).exitCode, 0);

    CliResult r = run({"pages", "fmt"});
    ASSERT_EQ(r.exitCode, 0);
    QStringList lines = r.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_GE(lines.size(), 4);
    EXPECT_EQ(lines[0], QStringLiteral("2 documents listed"));
    EXPECT_TRUE(lines[1].startsWith("URL"));
    EXPECT_TRUE(lines[1].contains("Title"));
    EXPECT_TRUE(lines[1].contains("Status"));

    r = run({"pages", "fmt", "--format", "csv"});
    ASSERT_EQ(r.exitCode, 0);
    lines = r.out.split("\r\n", Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 3) << r.out.toStdString();
    EXPECT_EQ(lines[0], "url,title,depth,inLinkCount,outLinkCount,weight,status,responseMs");
    EXPECT_TRUE(lines[1].startsWith(QStringLiteral("%1,\"Home, \"\"sweet\"\" home\",1,1,2,1,200,").arg(base)))
        << lines[1].toStdString();

    r = run({"pages", "fmt", "--format", "json"});
    ASSERT_EQ(r.exitCode, 0);
    const QJsonArray pages = QJsonDocument::fromJson(r.out.toUtf8()).array();
    ASSERT_EQ(pages.size(), 2);
    EXPECT_EQ(pages[1].toObject().value("url").toString(), base + "/a.html");
    EXPECT_EQ(pages[1].toObject().value("inLinkCount").toInt(), 2);
    EXPECT_EQ(pages[1].toObject().value("depth").toInt(), 2);
    EXPECT_DOUBLE_EQ(pages[1].toObject().value("weight").toDouble(), 1.0);

    r = run({"links", "fmt", base + "/a.html", "--format", "json"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QJsonArray links = QJsonDocument::fromJson(r.out.toUtf8()).array();
    ASSERT_EQ(links.size(), 2);
    EXPECT_EQ(links[0].toObject().value("anchor").toString(), "First, \"quoted\"");
    EXPECT_EQ(links[1].toObject().value("anchor").toString(), "Second");
    EXPECT_EQ(links[0].toObject().value("url").toString(), base);

    r = run({"links", "fmt", base + "/a.html"});
    EXPECT_TRUE(r.out.startsWith(QStringLiteral("2 links to %1/a.html\n").arg(base))) << r.out.toStdString();

    r = run({"pages", "fmt", "--filter", "noindex", "--format", "json"});
    EXPECT_EQ(r.exitCode, 0);
    EXPECT_EQ(QJsonDocument::fromJson(r.out.toUtf8()).array().size(), 0);
    EXPECT_EQ(run({"pages", "fmt", "--filter", "everything"}).exitCode, 2);
    EXPECT_EQ(run({"pages", "fmt", "--format", "xml"}).exitCode, 2);
    r = run({"links", "fmt", base + "/never-seen.html"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("no page with the URL"));
}

TEST_F(CrawlCommands, CrawlURLAndVacuum)
{
    server.setPage("/", page("Home", "<a href=\"/img.png\">picture</a><a href=\"/a.html\">a</a>"));
    server.setPage("/a.html", page("A", "<a href=\"/img.png\">picture again</a>"));
    server.setPage("/img.png", "\x89PNG....", "image/png");
    CliResult r = run({"crawl-url", base, "--name", "once"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Crawl of 'once'"));
    r = run({"crawl-url", base, "--name", "once"});
    EXPECT_EQ(r.exitCode, 2);
    EXPECT_TRUE(r.err.contains("exists already"));
    EXPECT_EQ(run({"crawl-url", "ftp://nowhere"}).exitCode, 2);

    // crawl-url does not vacuum: the links to the picture still count as links sent.
    r = run({"pages", "once", "--format", "json"});
    QJsonArray pages = QJsonDocument::fromJson(r.out.toUtf8()).array();
    ASSERT_EQ(pages.size(), 2) << r.out.toStdString();
    EXPECT_EQ(pages[0].toObject().value("outLinkCount").toInt(), 2);
    r = run({"vacuum", "once"});
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("1 non-HTML pages"));
    pages = QJsonDocument::fromJson(run({"pages", "once", "--format", "json"}).out.toUtf8()).array();
    EXPECT_EQ(pages[0].toObject().value("outLinkCount").toInt(), 1);
    EXPECT_EQ(pages[1].toObject().value("outLinkCount").toInt(), 0);
}

TEST(DemoCommand, CrawlsTheBuiltInSiteTwice)
{
    QTemporaryDir dir;
    for (int run = 0; run < 2; ++run) {
        const CliResult r = runCli({"demo"}, dir.path(), 120000);
        ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
        EXPECT_TRUE(r.out.contains("Crawl of 'demo' (http://127.0.0.1:")) << r.out.toStdString();
        EXPECT_TRUE(r.err.contains("Demo site served at http://127.0.0.1:"));
        EXPECT_FALSE(r.out.contains("404, all types:  0"));
        EXPECT_TRUE(r.out.contains("noindex:         2")) << r.out.toStdString();
        EXPECT_TRUE(r.out.contains("canonical:       1"));
        EXPECT_TRUE(r.out.contains("Pages analysed: 17 (this run: 17)")) << r.out.toStdString();
        // Whatever an earlier run left behind, the next one starts afresh.
        QFile db(dir.path() + "/demo.sqlite");
        ASSERT_TRUE(db.open(QIODevice::WriteOnly | QIODevice::Truncate));
        db.write(QByteArray(4096, 'd'));
    }
    const CliResult projects = runCli({"projects"}, dir.path());
    EXPECT_EQ(projects.out.count("demo"), 1);
}

TEST(CrawlCommandHelp, EveryCommandHasHelp)
{
    for (const char* command : {"crawl", "crawl-url", "vacuum", "show", "pages", "links", "demo"}) {
        const CliResult r = runCli({command, "--help"});
        EXPECT_EQ(r.exitCode, 0) << command;
        EXPECT_TRUE(r.out.contains(QStringLiteral("Usage: quillmere [--data-dir DIR] %1").arg(command))) << command;
    }
}

} // namespace

namespace {

// A small tmpfs stands for a full disk; skipped where mounting is not allowed.
class SmallDisk {
public:
    explicit SmallDisk(const QString& size)
    {
        path = dir.path() + "/disk";
        QDir().mkpath(path);
        mounted = QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=" + size, "tmpfs", path}) == 0;
    }
    ~SmallDisk()
    {
        if (mounted)
            QProcess::execute("umount", {path});
    }
    bool grow(const QString& size) { return QProcess::execute("mount", {"-o", "remount,size=" + size, path}) == 0; }

    QTemporaryDir dir;
    QString path;
    bool mounted = false;
};

TEST(CrawlOnAFullDisk, StopsWithAClearMessageAndContinueFinishes)
{
    SmallDisk disk("256k");
    if (!disk.mounted)
        GTEST_SKIP() << "cannot mount a small tmpfs here";
    LocalHttpServer server;
    ASSERT_TRUE(server.start());
    const std::string filler(1500, 'x');
    std::string links;
    for (int i = 1; i <= 120; ++i)
        links += "<a href=\"/p" + std::to_string(i) + ".html\">" + filler + std::to_string(i) + "</a>";
    server.setPage("/", page("Home", links));
    for (int i = 1; i <= 120; ++i)
        server.setPage("/p" + std::to_string(i) + ".html", page("P" + std::to_string(i), links));
    const QString data = disk.path + "/data";
    ASSERT_EQ(runCli({"new", "big", QString::fromStdString(server.baseUrl())}, data).exitCode, 0);

    CliResult r = runCli({"crawl", "big"}, data);
    EXPECT_EQ(r.exitCode, 1) << r.out.toStdString() << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("the disk is full")) << r.err.toStdString();
    EXPECT_TRUE(r.err.contains("--continue"));

    ASSERT_TRUE(disk.grow("64m"));
    r = runCli({"crawl", "big", "--continue"}, data);
    EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains("Queue:          122 done, 0 waiting")) << r.out.toStdString();
    const QJsonArray pages = QJsonDocument::fromJson(runCli({"pages", "big", "--format", "json"}, data).out.toUtf8()).array();
    EXPECT_EQ(pages.size(), 121);
    for (const auto& p : pages)
        EXPECT_NE(p.toObject().value("title").toString(), "") << p.toObject().value("url").toString().toStdString();
}

} // namespace
