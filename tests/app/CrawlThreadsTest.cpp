// A crawl started from the window takes its per-page calls on the crawler's thread: the
// crawl goes on while the window's thread is busy, the lists can be browsed, sorted and
// filtered while it runs and show only what it has committed, and what it writes to the
// crawl database is what the command line writes for the same site, classic or web.

#include "CrawlWindowSupport.h"

#include "app/AuditTabWidget.h"
#include "app/PagePanel.h"
#include "app/PreviewTabs.h"
#include "app/ReportListView.h"
#include "app/ReportTableModel.h"
#include "app/SiteMapView.h"
#include "store/LinkRules.h"
#include "store/PageFilter.h"

#include <QDirIterator>
#include <QHeaderView>
#include <QLabel>
#include <QProcess>
#include <QTableView>

#include <sqlite3.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <thread>

using namespace apptest;
using crawltest::anchor;

namespace {

// Rows of a query on a crawl database file, read through a connection of the test's own,
// each column as text.
std::vector<std::vector<std::string>> rowsOf(const QString& path, const std::string& sql)
{
    std::vector<std::vector<std::string>> out;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READONLY, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << "cannot open " << path.toStdString();
        sqlite3_close(db);
        return out;
    }
    sqlite3_busy_timeout(db, 10000);
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << sql << ": " << sqlite3_errmsg(db);
    } else {
        while (sqlite3_step(stmt) == SQLITE_ROW) {
            std::vector<std::string> row;
            for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                const unsigned char* text = sqlite3_column_text(stmt, i);
                row.push_back(sqlite3_column_type(stmt, i) == SQLITE_NULL ? "NULL"
                                                                          : reinterpret_cast<const char*>(text));
            }
            out.push_back(row);
        }
    }
    sqlite3_finalize(stmt);
    sqlite3_close(db);
    return out;
}

// The URLs of the pages committed to a crawl database, as another reader sees them now.
std::set<std::string> committedURLs(const QString& path)
{
    std::set<std::string> urls;
    for (const auto& row : rowsOf(path, "select url from Page"))
        urls.insert(row[0]);
    return urls;
}

// The four tables a crawl writes, row by row in the order they were written.
std::vector<std::vector<std::string>> crawlTables(const QString& path)
{
    std::vector<std::vector<std::string>> all;
    for (const char* sql : {"select * from Page order by idt", "select * from Links order by rowid",
                            "select * from DownloaderQueue order by idt", "select * from LinkHeaders order by rowid"}) {
        for (auto& row : rowsOf(path, sql))
            all.push_back(row);
        all.push_back({std::string("-- end of ") + sql});
    }
    return all;
}

// The same four tables with the pages named by URL instead of by identifier, each sorted, and
// without a link's counter: a crawl whose pages are analysed in parallel may number its
// pages, and count the links each one had received so far, in another order from one run to
// the next.
std::vector<std::vector<std::string>> crawlTablesByURL(const QString& path)
{
    std::vector<std::vector<std::string>> all;
    for (const char* sql :
         {"select path, page, title, url, is_no_index, is_no_follow, is_canonical, in_link_count, out_link_count, depth, "
          "weight from Page",
          "select T.url, S.url, L.anchor from Links L left join Page T on T.idt = L.idt_page "
          "left join Page S on S.idt = L.idt_source",
          "select url, path, document_name, depth, perform_done from DownloaderQueue", "select * from LinkHeaders"}) {
        auto rows = rowsOf(path, sql);
        std::sort(rows.begin(), rows.end());
        for (auto& row : rows)
            all.push_back(row);
        all.push_back({std::string("-- end of ") + sql});
    }
    return all;
}

// Runs the command-line program to its end; answers its exit status.
int runCli(const QStringList& arguments, QString* output = nullptr)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral(QUILLMERE_CLI_PATH), arguments);
    if (!process.waitForFinished(120000)) {
        process.kill();
        process.waitForFinished();
        return -1;
    }
    if (output)
        *output = QString::fromUtf8(process.readAll());
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

QString findFile(const QString& directory, const QString& name)
{
    QDirIterator it(directory, {name}, QDir::Files, QDirIterator::Subdirectories);
    return it.hasNext() ? it.next() : QString();
}

class CrawlThreadsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.started());
        app.window()->show();
    }

    MainViewController* controller() const { return app.controller(); }
    QString U(const std::string& path) const { return site.U(path); }

    // "/" links to `count` pages, each linking to the next, home and one missing page.
    void flatSite(int count)
    {
        std::string links;
        for (int i = 1; i <= count; ++i) {
            const std::string name = "p" + std::to_string(i) + ".html";
            links += anchor(name, "P" + std::to_string(i));
            site.page("/" + name, "P" + std::to_string(i),
                      anchor("p" + std::to_string(i % count + 1) + ".html", "Next") + anchor("/", "Home")
                          + anchor("gone" + std::to_string(i % 7) + ".html", "Gone"));
        }
        site.page("/", "Home", links);
    }

    // "/" links to `count` pages, each answered 4 ms late and linking to the next and to one of
    // `missing` missing pages: slow enough that a crawl is seen in the middle, many times over.
    void slowSite(int count, int missing)
    {
        std::string links;
        for (int i = 1; i <= count; ++i) {
            links += anchor("p" + std::to_string(i) + ".html", "P" + std::to_string(i));
            const std::string html = htmlPage("P" + std::to_string(i),
                                              anchor("p" + std::to_string(i % count + 1) + ".html", "Next")
                                                  + anchor("gone" + std::to_string(i % missing) + ".html", "Gone"));
            site.server.route("/p" + std::to_string(i) + ".html", [html](const HttpRequest&, HttpResponse& response) {
                std::this_thread::sleep_for(std::chrono::milliseconds(4));
                response.setContent(html, "text/html; charset=utf-8");
            });
        }
        site.page("/", "Home", links);
    }

    std::vector<std::string> shownURLs() const
    {
        std::vector<std::string> urls;
        for (int row = 0; row < app.documentsView()->numberOfRowsInTableView(); ++row)
            urls.push_back(app.documentsView()->cellText(QStringLiteral("IdtURL"), row).toStdString());
        return urls;
    }

    // Blocks the window's thread (no event handled) for that long.
    static void keepTheWindowBusy(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

    crawltest::Site site;
    LaunchedApp app;
};

TEST_F(CrawlThreadsTest, PagesAreCrawledWhileTheWindowsThreadIsBusy)
{
    flatSite(600);
    app.createAndShowProject(QStringLiteral("busy"), U("/"));
    CrawlEnds ends(controller());
    app.progressView()->buttonLancer()->click();
    ASSERT_TRUE(waitUntil([&] { return site.server.requestCount() >= 8; }));

    // The crawl commits on this thread (at most every 100 pages or quarter of a second), so
    // a first busy spell ends at a commit; the next one starts with a fresh group.
    keepTheWindowBusy(600);
    waitUntil([] { return false; }, 20);
    const size_t before = site.server.requestCount();
    keepTheWindowBusy(600);
    const size_t during = site.server.requestCount() - before;
    // Taken on this thread, the first per-page call would have held the crawl at the few
    // transfers fetched ahead (4).
    EXPECT_GE(during, 10u);

    controller()->stopIndexer();
    ASSERT_TRUE(ends.waitFor(1, 60000));
}

TEST_F(CrawlThreadsTest, ListsAreBrowsedSortedAndFilteredDuringACrawlAndShowOnlyCommittedRows)
{
    slowSite(300, 7);
    ProjectPtr project = app.createAndShowProject(QStringLiteral("browse"), U("/"));
    const QString path = project->full_sqlite_name();
    CrawlEnds ends(controller());
    app.progressView()->buttonLancer()->click();

    QTableView* table = app.documentsView()->documentsTableView();
    int looksInTheMiddle = 0;
    int notFoundSeen = 0;
    while (ends.count == 0 && looksInTheMiddle < 400) {
        waitUntil([] { return false; }, 15);
        // Browsing: every page, then sorted by URL.
        controller()->applyFilter(PageFilter::All);
        std::vector<std::string> shown = shownURLs();
        std::set<std::string> committed = committedURLs(path);
        for (const auto& url : shown)
            ASSERT_TRUE(committed.count(url)) << url << " is shown and not committed";
        if (shown.size() < 2)
            continue;
        table->sortByColumn(0, Qt::AscendingOrder);
        std::vector<std::string> sorted = shownURLs();
        EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end()));
        EXPECT_EQ(sorted.size(), shown.size());
        // Selecting a page shows the links to it.
        table->selectRow(0);
        EXPECT_LE(app.linksView()->numberOfRowsInTableView(), int(shown.size()));
        // Filtering: the missing pages.
        controller()->applyFilter(PageFilter::Error404AllTypes);
        const std::vector<std::string> missing = shownURLs();
        committed = committedURLs(path);
        for (const auto& url : missing) {
            ASSERT_TRUE(committed.count(url)) << url << " is shown and not committed";
            EXPECT_NE(url.find("gone"), std::string::npos) << url;
        }
        notFoundSeen += missing.empty() ? 0 : 1;
        if (controller()->isBusy() && ends.count == 0)
            ++looksInTheMiddle;
    }
    EXPECT_GE(looksInTheMiddle, 3);
    EXPECT_GE(notFoundSeen, 1);
    ASSERT_TRUE(ends.waitFor(1, 60000));
    // At the end the list holds every page of the site's HTML.
    controller()->applyFilter(PageFilter::All);
    EXPECT_EQ(size_t(app.documentsView()->numberOfRowsInTableView()), committedURLs(path).size());
    EXPECT_GT(app.documentsView()->numberOfRowsInTableView(), 300);
}

TEST_F(CrawlThreadsTest, AuditTabsPagePanelMapAndChartsReadOnlyCommittedRowsDuringACrawl)
{
    slowSite(200, 5);
    ProjectPtr project = app.createAndShowProject(QStringLiteral("audit-during"), U("/"));
    const QString path = project->full_sqlite_name();
    CrawlEnds ends(controller());
    app.progressView()->buttonLancer()->click();

    AuditTabWidget* audit = controller()->auditTabs();
    PreviewTabs* preview = controller()->previewTabs();
    QTableView* table = app.documentsView()->documentsTableView();
    int looksInTheMiddle = 0;
    qint64 mostFetchesShown = 0;
    while (ends.count == 0 && looksInTheMiddle < 200) {
        waitUntil([] { return false; }, 15);
        // The response codes: what the list counts was committed when it was read.
        audit->setCurrentWidget(audit->codesList());
        audit->refresh();
        qint64 fetchesShown = 0;
        for (const auto& row : audit->codesList()->model()->rows())
            fetchesShown += row.value(2).toLongLong();
        const qint64 fetchesCommitted = std::stoll(rowsOf(path, "select count(*) from FetchLog").at(0).at(0));
        ASSERT_LE(fetchesShown, fetchesCommitted);
        mostFetchesShown = std::max(mostFetchesShown, fetchesShown);
        // The overview and the broken links are read the same way.
        audit->setCurrentWidget(audit->overviewList());
        audit->refresh();
        ASSERT_FALSE(audit->findings().isEmpty());
        ASSERT_LE(audit->findings().first().count, qint64(committedURLs(path).size()));
        audit->setCurrentWidget(audit->reportList(AuditReport::Kind::Broken));
        audit->refresh();
        // The map and the charts.
        preview->setCurrentIndex(PreviewTabs::MapTab);
        preview->projectChanged();
        ASSERT_LE(size_t(preview->siteMap()->nodeCount()), committedURLs(path).size());
        preview->setCurrentIndex(PreviewTabs::ChartsTab);
        preview->projectChanged();
        // The page panel of a page shown.
        controller()->applyFilter(PageFilter::All);
        if (app.documentsView()->numberOfRowsInTableView() > 0) {
            preview->setCurrentIndex(PreviewTabs::PageTab);
            table->selectRow(0);
            EXPECT_FALSE(preview->pagePanel()->urlLabel()->text().isEmpty());
        }
        if (controller()->isBusy() && ends.count == 0)
            ++looksInTheMiddle;
    }
    EXPECT_GE(looksInTheMiddle, 3);
    EXPECT_GT(mostFetchesShown, 0);
    ASSERT_TRUE(ends.waitFor(1, 60000));
    // At the end the lists hold the whole crawl.
    audit->setCurrentWidget(audit->codesList());
    qint64 fetchesShown = 0;
    for (const auto& row : audit->codesList()->model()->rows())
        fetchesShown += row.value(2).toLongLong();
    EXPECT_EQ(fetchesShown, std::stoll(rowsOf(path, "select count(*) from FetchLog").at(0).at(0)));
    preview->setCurrentIndex(PreviewTabs::MapTab);
    EXPECT_EQ(size_t(preview->siteMap()->nodeCount()), committedURLs(path).size());
}

class SameDatabaseTest : public CrawlThreadsTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(SameDatabaseTest, AWindowCrawlWritesTheDatabaseTheCommandLineWrites)
{
    const bool web = std::string(GetParam()) == "web";
    flatSite(150);
    site.page("/deep.html", "Deep", anchor("deeper.html", "Deeper"));
    site.page("/deeper.html", "Deeper", anchor("/", "Home"));
    site.page("/p3.html", "P3", anchor("deep.html", "Deep") + anchor("doc.pdf", "Doc") + anchor("moved.html", "Moved"));
    site.raw("/doc.pdf", "%PDF-1.4", "application/pdf");
    site.redirect("/moved.html", "/p4.html");
    site.raw("/broken.html", "oops", "text/html", 500);
    site.page("/p5.html", "P5", anchor("broken.html", "Broken") + anchor("/", "Home"));

    // The command line, in a data directory of its own.
    QTemporaryDir cliDir;
    ASSERT_TRUE(cliDir.isValid());
    QStringList newArgs{"--data-dir", cliDir.path(), "new", "same", U("/")};
    if (web)
        newArgs << "--rules" << "web";
    QString out;
    ASSERT_EQ(runCli(newArgs, &out), 0) << out.toStdString();
    ASSERT_EQ(runCli({"--data-dir", cliDir.path(), "crawl", "same"}, &out), 0) << out.toStdString();
    const QString cliDatabase = findFile(cliDir.path(), QStringLiteral("same.sqlite"));
    ASSERT_FALSE(cliDatabase.isEmpty());

    // The window.
    // As the new-project sheet and the command line write it: without the last "/".
    ProjectPtr project = Project::createProjectWithName(QStringLiteral("same"), q(site.base()), -1, -1);
    if (web)
        ASSERT_TRUE(LinkRulesStore::makeWeb(project->sqlite3Database()));
    app.app()->saveContext();
    controller()->populateCurrentProject(project);
    ASSERT_TRUE(app.crawlThroughStartButton());

    const auto fromWindow = web ? crawlTablesByURL(project->full_sqlite_name()) : crawlTables(project->full_sqlite_name());
    const auto fromCli = web ? crawlTablesByURL(cliDatabase) : crawlTables(cliDatabase);
    ASSERT_GT(fromWindow.size(), 300u);
    ASSERT_EQ(fromWindow.size(), fromCli.size());
    for (size_t i = 0; i < fromCli.size(); ++i)
        ASSERT_EQ(fromWindow[i], fromCli[i]) << "row " << i;
}

INSTANTIATE_TEST_SUITE_P(Rules, SameDatabaseTest, ::testing::Values("classic", "web"));

TEST_F(CrawlThreadsTest, TheLimitsActOnTheCountersTheCrawlersThreadKeeps)
{
    flatSite(60);
    QTemporaryDir cliDir;
    ASSERT_TRUE(cliDir.isValid());
    QString out;
    ASSERT_EQ(runCli({"--data-dir", cliDir.path(), "new", "limited", U("/"), "--pages", "12"}, &out), 0)
        << out.toStdString();
    ASSERT_EQ(runCli({"--data-dir", cliDir.path(), "crawl", "limited"}, &out), 0) << out.toStdString();
    const QString cliDatabase = findFile(cliDir.path(), QStringLiteral("limited.sqlite"));
    ASSERT_FALSE(cliDatabase.isEmpty());

    ProjectPtr project = app.createAndShowProject(QStringLiteral("limited"), q(site.base()), -1, 12);
    ASSERT_TRUE(app.crawlThroughStartButton());
    EXPECT_EQ(crawlTables(project->full_sqlite_name()), crawlTables(cliDatabase));
    // The page that passes the limit is the last one analysed.
    EXPECT_EQ(project->pages_count(), 13);
    EXPECT_EQ(storedProjectAttributes(app.app(), QStringLiteral("limited")).value(QStringLiteral("pages_count")).toInt(),
              13);
    EXPECT_EQ(app.progressView()->textFieldPageAnalysees()->text(), QStringLiteral("13"));
}

} // namespace
