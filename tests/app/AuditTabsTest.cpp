// The audit's tab bar over the documents list: each list against the core's query and the
// command line's report on the demo site and on a site with broken links, redirects and other
// hosts; search, column chooser, sort, CSV export read back, copy, the sitemap item.

#include "AppTestSupport.h"
#include "ListsTestSupport.h"

#include "app/AuditTabWidget.h"
#include "app/DocumentsTab.h"
#include "app/ListToolBar.h"
#include "app/ReportListView.h"
#include "app/ReportTableModel.h"
#include "app/SplitView.h"
#include "demo/DemoServer.h"
#include "store/AuditOverview.h"
#include "store/AuditReport.h"
#include "store/FetchLog.h"
#include "store/LinkRules.h"
#include "store/PageFilter.h"
#include "store/ReportWriter.h"
#include "store/ResponseCodes.h"
#include "support/CliRunner.h"
#include "support/WebTestSite.h"
#include "app/NewProjectWindowController.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QToolButton>

#include <algorithm>

using namespace apptest;

namespace {

QString readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("<unreadable>");
}

// A CSV text read back into rows of fields (quoted fields, doubled quotes, CRLF).
QList<QStringList> parseCsv(const QString& text)
{
    QList<QStringList> rows;
    QStringList row;
    QString field;
    bool quoted = false;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (quoted) {
            if (c == '"' && i + 1 < text.size() && text.at(i + 1) == '"') {
                field += '"';
                ++i;
            } else if (c == '"') {
                quoted = false;
            } else {
                field += c;
            }
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            row << field;
            field.clear();
        } else if (c == '\r') {
        } else if (c == '\n') {
            row << field;
            rows << row;
            row.clear();
            field.clear();
        } else {
            field += c;
        }
    }
    return rows;
}

QStringList texts(const QList<QVariant>& values)
{
    QStringList out;
    for (const auto& v : values)
        out << (v.isNull() ? QString() : ReportWriter::text(v));
    return out;
}

// The rows a list shows, as text, in the order shown.
QList<QStringList> shownTexts(QTableView* table)
{
    QList<QStringList> rows;
    for (int r = 0; r < table->model()->rowCount(); ++r) {
        if (table->isRowHidden(r))
            continue;
        QStringList row;
        for (int c = 0; c < table->model()->columnCount(); ++c)
            row << shown(table, r, c);
        rows << row;
    }
    return rows;
}

QList<QStringList> coreRows(AuditReport::Kind kind, const ProjectPtr& project)
{
    QList<QStringList> rows;
    EXPECT_TRUE(AuditReport::forEachRow(kind, project, [&](const QList<QVariant>& row) { rows << texts(row); }));
    return rows;
}

int tabIndexOf(AuditTabWidget* tabs, QWidget* page)
{
    return tabs->indexOf(page);
}

// The window's export of a list, to a file of the temporary directory.
QString exportThroughButton(AuditTabWidget* tabs, QWidget* tab, QToolButton* button, const QString& path)
{
    AuditTabWidget::setSavePathProviderForTesting([path](const QString&) { return path; });
    tabs->setCurrentWidget(tab);
    button->click();
    AuditTabWidget::setSavePathProviderForTesting(nullptr);
    return readAll(path);
}

// The demo site crawled (classic rules) through the window's start button.
struct DemoCrawl {
    DemoServer server;
    LaunchedApp app;
    ProjectPtr project;
    bool crawled = false;
    AuditTabWidget* tabs = nullptr;

    DemoCrawl()
    {
        if (!server.start())
            return;
        app.window()->resize(1200, 1000);
        app.window()->show();
        project = app.createAndShowProject("demo", server.baseURL());
        crawled = app.crawlThroughStartButton(60000);
        tabs = app.controller()->auditTabs();
    }
};

class AuditTabsDemoTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {}
    void SetUp() override
    {
        d = std::make_unique<DemoCrawl>();
        ASSERT_TRUE(d->crawled);
        tabs = d->tabs;
    }
    void TearDown() override { d.reset(); }
    QString data() const { return d->app.dir.path(); }
    QString cliOut(const QStringList& args)
    {
        const CliResult r = runCli(args, data());
        EXPECT_EQ(r.exitCode, 0) << qPrintable(r.err);
        return r.out;
    }

    std::unique_ptr<DemoCrawl> d;
    AuditTabWidget* tabs = nullptr;
};

} // namespace

TEST_F(AuditTabsDemoTest, TabBarTakesTheDocumentsListPlaceWithTheDescribedListFirst)
{
    SplitView* split = d->app.controller()->splitView();
    EXPECT_EQ(split->widget(1), tabs);
    ASSERT_EQ(tabs->widget(0), tabs->documentsTab());
    EXPECT_EQ(tabs->documentsTab()->documentsView(), d->app.documentsView());
    EXPECT_TRUE(tabs->documentsTab()->isAncestorOf(d->app.documentsView()));
    QStringList captions;
    for (int i = 0; i < tabs->count(); ++i)
        captions << tabs->tabText(i);
    EXPECT_EQ(captions, QStringList({"Documents", "Vue d'ensemble", "Codes de réponse", "Liens cassés", "Redirections",
                                     "Liens externes", "Ressources", "Bloqués par robots.txt", "Fragments absents"}));
    // A classic project has no web rules' lists.
    for (int i = 0; i < tabs->count(); ++i)
        EXPECT_EQ(tabs->isTabVisible(i), i < 5) << qPrintable(captions.at(i));
    // The described list keeps its six columns.
    EXPECT_EQ(d->app.documentsView()->documentsTableView()->model()->columnCount(), 6);
}

TEST_F(AuditTabsDemoTest, BrokenAndRedirectListsAreTheCoreQueriesAndExportAsTheCommandLine)
{
    using K = AuditReport::Kind;
    for (K kind : {K::Broken, K::Redirects}) {
        ReportListView* list = tabs->reportList(kind);
        ASSERT_TRUE(list);
        tabs->setCurrentWidget(list);
        const QList<QStringList> expected = coreRows(kind, d->project);
        EXPECT_FALSE(expected.isEmpty());
        EXPECT_EQ(shownTexts(list->tableView()), expected);
        const QString path = data() + (kind == K::Broken ? "/broken.csv" : "/redirects.csv");
        const QString exported = exportThroughButton(tabs, list, list->toolBar()->exportButton(), path);
        const QString cli = cliOut({kind == K::Broken ? "broken" : "redirects", "demo", "--format", "csv"});
        EXPECT_EQ(exported, cli);
        const QList<QStringList> parsed = parseCsv(exported);
        ASSERT_EQ(parsed.size(), expected.size() + 1);
        EXPECT_EQ(parsed.first(), AuditReport::keys(kind, false));
        EXPECT_EQ(parsed.mid(1), expected);
    }
    // The demo's moved page is listed with its chain.
    bool moved = false;
    for (const auto& row : coreRows(K::Redirects, d->project))
        moved = moved || row.value(0).endsWith("/old-page.html");
    EXPECT_TRUE(moved);
}

TEST_F(AuditTabsDemoTest, ResponseCodesByClassAndCode)
{
    QList<QStringList> expected;
    qint64 total = 0;
    for (const auto& c : ResponseCodes::counts(d->project)) {
        // A transfer that got no status is in the class the window names "échec".
        expected << QStringList{c.statusClass == "failed" ? L("AuditClassFailed") : c.statusClass, c.code,
                                QString::number(c.count)};
        total += c.count;
    }
    tabs->setCurrentWidget(tabs->codesList());
    EXPECT_EQ(shownTexts(tabs->codesList()->tableView()), expected);
    EXPECT_TRUE(std::any_of(expected.begin(), expected.end(),
                            [](const QStringList& r) { return r.value(0) == "4xx" && r.value(1) == "404"; }));
    EXPECT_TRUE(std::any_of(expected.begin(), expected.end(), [](const QStringList& r) { return r.value(0) == "2xx"; }));
    EXPECT_TRUE(std::any_of(expected.begin(), expected.end(), [](const QStringList& r) { return r.value(0) == "échec"; }));
    // Every URL fetched is counted once.
    qint64 fetched = 0;
    for (const auto& p : PageFilter::pages(PageFilter::All, d->project))
        fetched += FetchLog::getFetchLogWithURL(p->url(), d->project) ? 1 : 0;
    EXPECT_GE(total, fetched);
    // A header click sorts the counts as numbers.
    QTableView* table = tabs->codesList()->tableView();
    tabs->setCurrentWidget(tabs->codesList());
    clickHeader(table, 2);
    QList<qint64> counts;
    for (int r = 0; r < table->model()->rowCount(); ++r)
        counts << table->model()->index(r, 2).data(ReportTableModel::ValueRole).toLongLong();
    EXPECT_TRUE(std::is_sorted(counts.begin(), counts.end()));
    EXPECT_EQ(counts.size(), expected.size());
}

TEST_F(AuditTabsDemoTest, OverviewCountsEachFindingAndAClickOpensItsList)
{
    const QList<AuditOverview::Finding> findings = AuditOverview::findings(d->project);
    QTableView* table = tabs->overviewList()->tableView();
    tabs->setCurrentWidget(tabs->overviewList());
    ASSERT_EQ(table->model()->rowCount(), findings.size());
    for (int r = 0; r < findings.size(); ++r) {
        EXPECT_EQ(shown(table, r, 0), L(findings.at(r).key));
        EXPECT_EQ(shown(table, r, 1), QString::number(findings.at(r).count));
    }
    auto rowOf = [&](const char* key) {
        for (int r = 0; r < findings.size(); ++r)
            if (qstrcmp(findings.at(r).key, key) == 0)
                return r;
        return -1;
    };
    const int broken = rowOf("AuditFindingBrokenLinks");
    ASSERT_GE(broken, 0);
    EXPECT_EQ(findings.at(broken).count, FetchLog::countBrokenLinks(d->project));
    EXPECT_GT(findings.at(broken).count, 0);
    const int all404 = rowOf("AuditFinding404All");
    ASSERT_GE(all404, 0);
    const qint64 n404 = PageFilter::pages(PageFilter::Error404AllTypes, d->project).size();
    EXPECT_EQ(findings.at(all404).count, n404);

    tabs->setCurrentWidget(tabs->overviewList());
    clickRow(table, broken);
    EXPECT_EQ(tabs->currentWidget(), tabs->reportList(AuditReport::Kind::Broken));
    tabs->setCurrentWidget(tabs->overviewList());
    clickRow(table, all404);
    EXPECT_EQ(tabs->currentWidget(), tabs->documentsTab());
    EXPECT_EQ(d->app.documentsView()->title(), PageFilter::title(PageFilter::Error404AllTypes, quint64(n404)));
    EXPECT_EQ(d->app.documentsView()->numberOfRowsInTableView(), n404);
}

TEST_F(AuditTabsDemoTest, SearchFiltersAsOneTypes)
{
    ReportListView* list = tabs->reportList(AuditReport::Kind::Broken);
    tabs->setCurrentWidget(list);
    const QList<QStringList> all = coreRows(AuditReport::Kind::Broken, d->project);
    ASSERT_FALSE(all.isEmpty());
    const QString needle = all.first().value(0).section('/', -1).toUpper();
    ASSERT_FALSE(needle.isEmpty());
    QTest::keyClicks(list->toolBar()->searchField(), needle);
    QList<QStringList> expected;
    for (const auto& row : all)
        if (row.join('\x1f').contains(needle, Qt::CaseInsensitive))
            expected << row;
    EXPECT_EQ(shownTexts(list->tableView()), expected);
    EXPECT_LT(list->shownRowCount(), all.size() + 1);
    list->toolBar()->searchField()->clear();
    EXPECT_EQ(list->shownRowCount(), all.size());

    // The documents list: rows without the text are hidden.
    DocumentsTab* docs = tabs->documentsTab();
    tabs->setCurrentWidget(docs);
    QTableView* table = d->app.documentsView()->documentsTableView();
    const int rows = table->model()->rowCount();
    ASSERT_GT(rows, 2);
    QTest::keyClicks(docs->toolBar()->searchField(), "old-page");
    int shownRows = 0;
    for (int r = 0; r < rows; ++r) {
        const bool match = shown(table, r, 0).contains("old-page") || shown(table, r, 1).contains("old-page", Qt::CaseInsensitive);
        EXPECT_EQ(!table->isRowHidden(r), match) << r;
        shownRows += match ? 1 : 0;
    }
    EXPECT_EQ(docs->shownRowCount(), shownRows);
    EXPECT_LT(shownRows, rows);
    // A sort keeps the search.
    clickHeader(table, 2);
    EXPECT_EQ(docs->shownRowCount(), shownRows);
}

TEST_F(AuditTabsDemoTest, DocumentsColumnChooserOffersStatusAndResponseTimeHiddenByDefault)
{
    DocumentsTab* docs = tabs->documentsTab();
    QMenu* menu = docs->toolBar()->columnsMenu();
    const QList<QAction*> items = menu->actions();
    ASSERT_EQ(items.size(), 8);
    EXPECT_EQ(items.at(6)->text(), "Statut");
    EXPECT_EQ(items.at(7)->text(), "Temps (ms)");
    EXPECT_FALSE(items.at(6)->isChecked());
    EXPECT_FALSE(items.at(7)->isChecked());
    QTableView* table = d->app.documentsView()->documentsTableView();
    EXPECT_EQ(table->model()->columnCount(), 6);

    items.at(6)->trigger();
    items.at(7)->trigger();
    ASSERT_EQ(table->model()->columnCount(), 8);
    EXPECT_EQ(headerCaptions(table).mid(6), QStringList({"Statut", "Temps (ms)"}));
    const auto& pages = d->app.documentsView()->arrayOfPages();
    for (int r = 0; r < pages.size(); ++r) {
        const FetchLogPtr fetch = FetchLog::getFetchLogWithURL(pages.at(r)->url(), d->project);
        EXPECT_EQ(shown(table, r, 6), fetch ? fetch->statusText() : QString("-")) << r;
        EXPECT_EQ(d->app.documentsView()->cellText("IdtStatus", r), shown(table, r, 6));
        if (fetch)
            EXPECT_EQ(shown(table, r, 7), QString::number(fetch->responseMs()));
    }
    // Every column shown: the export is the command line's pages report.
    const QString exported = exportThroughButton(tabs, docs, docs->toolBar()->exportButton(), data() + "/pages.csv");
    EXPECT_EQ(exported, cliOut({"pages", "demo", "--format", "csv"}));

    // A described column hidden from the chooser leaves the list and the export.
    items.at(1)->trigger();
    EXPECT_TRUE(table->isColumnHidden(1));
    const QList<QStringList> parsed = parseCsv(exportThroughButton(tabs, docs, docs->toolBar()->exportButton(), data() + "/p2.csv"));
    ASSERT_FALSE(parsed.isEmpty());
    EXPECT_EQ(parsed.first(), QStringList({"url", "depth", "inLinkCount", "outLinkCount", "weight", "status", "responseMs"}));
    EXPECT_EQ(parsed.size(), pages.size() + 1);

    items.at(6)->trigger();
    EXPECT_EQ(table->model()->columnCount(), 7);
    EXPECT_EQ(headerCaptions(table).last(), "Temps (ms)");
}

TEST_F(AuditTabsDemoTest, ReportColumnChooserHidesAColumnFromListAndExport)
{
    ReportListView* list = tabs->reportList(AuditReport::Kind::Redirects);
    const QList<QAction*> items = list->toolBar()->columnsMenu()->actions();
    ASSERT_EQ(items.size(), 7);
    EXPECT_EQ(items.at(2)->text(), L("CliColumnChain"));
    items.at(2)->trigger();
    EXPECT_TRUE(list->tableView()->isColumnHidden(2));
    const QList<QStringList> parsed = parseCsv(exportThroughButton(tabs, list, list->toolBar()->exportButton(), data() + "/r.csv"));
    ASSERT_FALSE(parsed.isEmpty());
    EXPECT_EQ(parsed.first(), QStringList({"url", "hops", "finalUrl", "status", "sourceUrl", "anchor"}));
    items.at(2)->trigger();
    EXPECT_FALSE(list->tableView()->isColumnHidden(2));
}

TEST_F(AuditTabsDemoTest, CtrlCCopiesTheSelectedRows)
{
    ReportListView* list = tabs->reportList(AuditReport::Kind::Broken);
    tabs->setCurrentWidget(list);
    QTableView* table = list->tableView();
    ASSERT_GE(table->model()->rowCount(), 1);
    QApplication::clipboard()->clear();
    clickRow(table, 0);
    table->setFocus();
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    QStringList first;
    for (int c = 0; c < table->model()->columnCount(); ++c)
        first << shown(table, 0, c);
    EXPECT_EQ(QApplication::clipboard()->text(), first.join('\t'));

    // The documents list: the row selected, its shown cells.
    tabs->setCurrentWidget(tabs->documentsTab());
    QTableView* docs = d->app.documentsView()->documentsTableView();
    clickRow(docs, 1);
    docs->setFocus();
    QTest::keyClick(docs, Qt::Key_C, Qt::ControlModifier);
    QStringList row;
    for (int c = 0; c < docs->model()->columnCount(); ++c)
        row << shown(docs, 1, c);
    EXPECT_EQ(QApplication::clipboard()->text(), row.join('\t'));
}

TEST_F(AuditTabsDemoTest, FileMenuExportsTheSitemapAndTheCurrentList)
{
    QAction* sitemap = d->app.window()->findChild<QAction*>("menuItemExportSitemap");
    QAction* current = d->app.window()->findChild<QAction*>("menuItemExportList");
    ASSERT_TRUE(sitemap);
    ASSERT_TRUE(current);
    EXPECT_EQ(sitemap->text(), "Exporter le plan du site…");
    EXPECT_EQ(current->text(), "Exporter la liste affichée…");
    const QString path = data() + "/sitemap.xml";
    AuditTabWidget::setSavePathProviderForTesting([path](const QString&) { return path; });
    sitemap->trigger();
    AuditTabWidget::setSavePathProviderForTesting(nullptr);
    ASSERT_EQ(runCli({"sitemap", "demo", "-o", data() + "/cli-sitemap.xml"}, data()).exitCode, 0);
    const QString xml = readAll(path);
    EXPECT_TRUE(xml.contains("<urlset"));
    EXPECT_EQ(xml, readAll(data() + "/cli-sitemap.xml"));

    tabs->setCurrentWidget(tabs->codesList());
    const QString csv = data() + "/codes.csv";
    AuditTabWidget::setSavePathProviderForTesting([csv](const QString&) { return csv; });
    current->trigger();
    AuditTabWidget::setSavePathProviderForTesting(nullptr);
    const QList<QStringList> parsed = parseCsv(readAll(csv));
    ASSERT_EQ(parsed.size(), tabs->codesList()->tableView()->model()->rowCount() + 1);
    EXPECT_EQ(parsed.first(), QStringList({"class", "status", "count"}));
    EXPECT_EQ(parsed.mid(1), shownTexts(tabs->codesList()->tableView()));

    // A file that cannot be written is said in an alert.
    Alert::queueAnswer(Alert::FirstButtonReturn);
    AuditTabWidget::setSavePathProviderForTesting([this](const QString&) { return data() + "/no/such/dir/x.csv"; });
    current->trigger();
    AuditTabWidget::setSavePathProviderForTesting(nullptr);
    ASSERT_FALSE(Alert::shownAlerts().isEmpty());
    EXPECT_TRUE(Alert::shownAlerts().last().messageText.startsWith("Impossible d'écrire " + data() + "/no/such/dir/x.csv : "));
}

// A web-rules project over three loopback hosts: every list against the core and the command line.
TEST(AuditTabsWeb, EveryListOfAWebProjectIsTheCoreQueryAndTheCommandLineReport)
{
    WebTestSite site;
    ASSERT_TRUE(site.start());
    LaunchedApp app;
    app.window()->resize(1200, 1000);
    app.window()->show();
    app.app()->createProject();
    NewProjectWindowController* sheet = app.controller()->projectWindowController();
    ASSERT_TRUE(sheet);
    sheet->popUpLinkRules()->setCurrentIndex(1);
    QTest::keyClicks(sheet->textFieldName(), "web");
    QTest::keyClicks(sheet->textFieldURL(), q(site.startUrl()));
    QTest::keyClick(sheet->textFieldURL(), Qt::Key_Return);
    const ProjectPtr project = Project::getProjectWithName("web");
    ASSERT_TRUE(project);
    ASSERT_EQ(LinkRulesStore::of(project), LinkRules::Web);
    ASSERT_TRUE(app.crawlThroughStartButton(120000));
    AuditTabWidget* tabs = app.controller()->auditTabs();
    for (int i = 0; i < tabs->count(); ++i)
        EXPECT_TRUE(tabs->isTabVisible(i)) << qPrintable(tabs->tabText(i));

    using K = AuditReport::Kind;
    const struct {
        K kind;
        const char* command;
    } lists[] = {{K::Broken, "broken"}, {K::External, "external"}, {K::Fragments, "fragments"}, {K::Robots, "robots"},
                 {K::Resources, nullptr}, {K::Redirects, "redirects"}};
    for (const auto& l : lists) {
        ReportListView* list = tabs->reportList(l.kind);
        tabs->setCurrentWidget(list);
        const QList<QStringList> expected = coreRows(l.kind, project);
        EXPECT_EQ(shownTexts(list->tableView()), expected) << l.command;
        EXPECT_EQ(headerCaptions(list->tableView()).size(), AuditReport::keys(l.kind, true).size());
        if (!l.command)
            continue;
        const QString path = app.dir.path() + "/" + l.command + ".csv";
        const QString exported = exportThroughButton(tabs, list, list->toolBar()->exportButton(), path);
        const CliResult cli = runCli({l.command, "web", "--format", "csv"}, app.dir.path());
        EXPECT_EQ(cli.exitCode, 0) << qPrintable(cli.err);
        EXPECT_EQ(exported, cli.out) << l.command;
    }

    // What the site is known to hold is there.
    const auto hasUrl = [](ReportListView* list, const std::string& url, int column = 0) {
        for (const auto& row : shownTexts(list->tableView()))
            if (row.value(column) == q(url))
                return true;
        return false;
    };
    const WebSiteTruth& truth = site.truth();
    ASSERT_FALSE(truth.broken.empty());
    for (const auto& b : truth.broken)
        EXPECT_TRUE(hasUrl(tabs->reportList(K::Broken), b.url)) << b.url;
    for (const auto& e : truth.externals)
        EXPECT_TRUE(hasUrl(tabs->reportList(K::External), e.url)) << e.url;
    for (const auto& r : truth.robots)
        EXPECT_TRUE(hasUrl(tabs->reportList(K::Robots), r.url)) << r.url;
    for (const auto& f : truth.fragments)
        EXPECT_TRUE(hasUrl(tabs->reportList(K::Fragments), f.url)) << f.url;
    EXPECT_GT(tabs->reportList(K::Resources)->shownRowCount(), 0);
    // The broken list of a web project shows the kind of each target.
    EXPECT_EQ(headerCaptions(tabs->reportList(K::Broken)->tableView()).value(4), L("CliColumnKind"));

    // The overview's web findings, each opening its list.
    const QList<AuditOverview::Finding> findings = AuditOverview::findings(project);
    QTableView* overview = tabs->overviewList()->tableView();
    tabs->setCurrentWidget(tabs->overviewList());
    ASSERT_EQ(overview->model()->rowCount(), findings.size());
    for (int r = 0; r < findings.size(); ++r) {
        EXPECT_EQ(shown(overview, r, 1), QString::number(findings.at(r).count)) << findings.at(r).key;
        if (findings.at(r).list != AuditOverview::List::Report)
            continue;
        tabs->setCurrentWidget(tabs->overviewList());
        clickRow(overview, r);
        EXPECT_EQ(tabs->currentWidget(), tabs->reportList(findings.at(r).report)) << findings.at(r).key;
    }
}

// A list shown while a crawl runs is read again when the crawl ends; one not shown is read
// when its tab is.
TEST(AuditTabsRefresh, ListsAreReadAgainWhenACrawlEnds)
{
    DemoServer server;
    ASSERT_TRUE(server.start());
    LaunchedApp app;
    app.window()->resize(1200, 1000);
    app.window()->show();
    const ProjectPtr project = app.createAndShowProject("demo", server.baseURL());
    AuditTabWidget* tabs = app.controller()->auditTabs();
    ReportListView* broken = tabs->reportList(AuditReport::Kind::Broken);
    ReportListView* redirects = tabs->reportList(AuditReport::Kind::Redirects);
    tabs->setCurrentWidget(broken);
    EXPECT_EQ(broken->shownRowCount(), 0);
    ASSERT_TRUE(app.crawlThroughStartButton(60000));
    const QList<QStringList> expected = coreRows(AuditReport::Kind::Broken, project);
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(tabs->currentWidget(), broken);
    EXPECT_EQ(shownTexts(broken->tableView()), expected);
    tabs->setCurrentWidget(redirects);
    EXPECT_EQ(shownTexts(redirects->tableView()), coreRows(AuditReport::Kind::Redirects, project));
    EXPECT_GT(redirects->shownRowCount(), 0);
    // Closing the project empties them.
    app.controller()->closeCurrentProject();
    EXPECT_EQ(redirects->shownRowCount(), 0);
}
