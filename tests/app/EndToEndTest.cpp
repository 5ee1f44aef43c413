// The program driven as a user drives it: a new project typed into its sheet, a crawl
// stopped from the progress sheet and continued from the start button, the lists read
// against the crawl database, and the 404 filter chosen in the filter sheet.
#include "AppTestSupport.h"

#include "crawler/CrawlTestSupport.h"
#include "store/Localization.h"
#include "store/QuillmereLinkPage.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <QTableView>
#include <QTest>

#include <atomic>
#include <chrono>
#include <thread>

using namespace apptest;

namespace {

// GET requests the site received for a path.
int gets(const LocalHttpServer& server, const std::string& path)
{
    int n = 0;
    for (const auto& request : server.requests())
        if (request.method == "GET" && request.path == path)
            ++n;
    return n;
}

std::string s(const QString& text)
{
    return text.toStdString();
}

// A weight as the lists write it: the shortest form that reads back to the same value.
QString weightText(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

} // namespace

TEST(EndToEnd, CreateCrawlStopContinueBrowseAndFilter)
{
    // The site: /slow.html holds its answer until the test lets it go.
    std::atomic<bool> slowEntered{false};
    std::atomic<bool> slowReleased{false};
    LocalHttpServer server;
    auto page = [&](const std::string& path, const std::string& title, const std::string& body) {
        server.setPage(path, "<html><head><title>" + title + "</title></head><body>" + body + "</body></html>");
    };
    page("/", "Accueil",
         "<a href='a.html'>Alpha</a> <a href='b.html'>Bravo</a> <a href='slow.html'>Lente</a>"
         " <a href='missing.html'>Perdu</a> <a href='missing.png'>Image perdue</a>");
    page("/a.html", "Page A", "<a href='b.html'>B depuis A</a> <a href='c.html'>C depuis A</a>");
    page("/b.html", "Page B", "<a href='c.html'>C depuis B</a>");
    page("/c.html", "Page C", "<a href='a.html'>A depuis C</a>");
    server.route("/slow.html", [&](const HttpRequest&, HttpResponse& response) {
        slowEntered = true;
        for (int i = 0; i < 1000 && !slowReleased; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        response.setContent("<html><head><title>Page lente</title></head><body><a href='c.html'>C depuis la lente</a>"
                            "</body></html>",
                            "text/html; charset=utf-8");
    });
    server.setPage("/missing.html", "<html><body>Introuvable</body></html>", "text/html; charset=utf-8", 404);
    server.setPage("/missing.png", "rien", "image/png", 404);
    ASSERT_TRUE(server.start());
    const QString base = q(server.baseUrl());
    auto U = [&](const std::string& path) { return q(server.url(path)); };

    LaunchedApp app;
    MainWindow* window = app.window();
    window->resize(1200, 1000);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window));
    bool finished = false;
    QObject::connect(app.controller(), &MainViewController::crawlFinished, [&] { finished = true; });

    // New project: the toolbar button, the two fields typed, Return.
    window->toolBarItemLocNewProject->trigger();
    NewProjectWindowController* newProject = app.controller()->projectWindowController();
    ASSERT_TRUE(newProject);
    ASSERT_TRUE(waitUntil([&] { return newProject->isVisible(); }, 5000));
    QTest::keyClicks(newProject->textFieldName(), "Site de test");
    QTest::keyClicks(newProject->textFieldURL(), base + "/");
    QTest::keyClick(newProject->textFieldURL(), Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !newProject->isVisible(); }, 5000));
    const ProjectPtr project = Project::getProjectWithName("Site de test");
    ASSERT_TRUE(project);
    EXPECT_EQ(project->url(), base);
    ProgressView* panel = app.progressView();
    EXPECT_EQ(panel->textFieldProjectName()->text(), "Site de test");
    EXPECT_EQ(panel->textFieldProjectURL()->text(), base);

    // Start; stop from the progress sheet while /slow.html is being read.
    QTest::mouseClick(panel->buttonLancer(), Qt::LeftButton);
    ProgressWindowController* progress = app.controller()->progressWindowController();
    ASSERT_TRUE(progress);
    ASSERT_TRUE(waitUntil([&] { return slowEntered.load(); }, 15000));
    // The pages before it in the queue may have been fetched ahead with it: the sheet shows
    // /slow.html as the page in hand once they are analysed.
    ASSERT_TRUE(waitUntil([&] { return progress->textFieldURLPageAnalysee()->text() == U("/slow.html"); }, 15000))
        << progress->textFieldURLPageAnalysee()->text().toStdString();
    EXPECT_TRUE(progress->isVisible());
    EXPECT_TRUE(app.controller()->isBusy());
    // The stop abandons the transfer in flight: /slow.html, still held by the server, is
    // neither analysed nor marked done, and the continued crawl asks for it again.
    QTest::mouseClick(progress->buttonStop(), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return finished && !app.controller()->isBusy(); }, 15000));
    slowReleased = true;
    EXPECT_FALSE(progress->isVisible());
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());

    crawltest::Db db(project, "");
    ASSERT_FALSE(db.waitingUrls().empty()) << "the stop left nothing to continue";
    EXPECT_EQ(gets(server, "/c.html"), 0);
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), 3); // start page, a, b

    // Start again: the continue alert, answered with its second button.
    finished = false;
    Alert::queueAnswer(1001);
    QTest::mouseClick(panel->buttonLancer(), Qt::LeftButton);
    EXPECT_EQ(Alert::queuedAnswerCount(), 0);
    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    const Alert::Shown alert = Alert::shownAlerts().at(0);
    EXPECT_EQ(alert.messageText, Localization::localizedString("MainViewAlertStartContinueMessageText"));
    EXPECT_EQ(alert.buttons, QStringList({Localization::localizedString("MainViewAlertStartContinueOtherButton"),
                                          Localization::localizedString("MainViewAlertStartContinueAlternateButton"),
                                          Localization::localizedString("MainViewAlertStartContinueDefaultButton")}));
    EXPECT_EQ(alert.answer, 1001);
    ProgressWindowController* secondProgress = app.controller()->progressWindowController();
    ASSERT_TRUE(secondProgress);
    ASSERT_TRUE(waitUntil([&] { return finished && !app.controller()->isBusy(); }, 15000));
    EXPECT_FALSE(secondProgress->isVisible());
    EXPECT_TRUE(db.waitingUrls().empty());
    // Continued, not restarted: what the first run analysed was not read again. The pages
    // after the stopped one may have been fetched ahead in the first run; those answers were
    // dropped with the stop and the pages asked for once more.
    for (const char* path : {"/", "/a.html", "/b.html"})
        EXPECT_EQ(gets(server, path), 1) << path;
    for (const char* path : {"/c.html", "/missing.html", "/missing.png"}) {
        EXPECT_GE(gets(server, path), 1) << path;
        EXPECT_LE(gets(server, path), 2) << path;
    }
    EXPECT_EQ(gets(server, "/slow.html"), 2);

    // The documents list, row for row against the Page table.
    DocumentsView* documents = app.documentsView();
    EXPECT_EQ(documents->title(), "6 documents référencés");
    const QStringList expectedURLs = {base, U("/a.html"), U("/b.html"), U("/slow.html"), U("/missing.html"), U("/c.html")};
    ASSERT_EQ(documents->numberOfRowsInTableView(), expectedURLs.size());
    QTableView* documentsTable = documents->documentsTableView();
    for (int row = 0; row < expectedURLs.size(); ++row) {
        const auto stored = db.page(s(expectedURLs.at(row)));
        ASSERT_TRUE(stored) << s(expectedURLs.at(row));
        const QStringList expected = {q(stored->url), q(stored->title), QString::number(stored->depth),
                                      QString::number(stored->in), QString::number(stored->out),
                                      weightText(stored->weight)};
        for (int column = 0; column < 6; ++column)
            EXPECT_EQ(documentsTable->model()->index(row, column).data().toString(), expected.at(column))
                << "row " << row << " column " << column;
    }
    EXPECT_EQ(documents->cellText("IdtTitle", 3), "Page lente");
    EXPECT_EQ(documents->cellText("IdtTitle", 5), "Page C");
    EXPECT_EQ(documents->cellText("IdtInputs", 5), "3");

    // The links to /c.html, against the Links table.
    const QRect cRow = documentsTable->visualRect(documentsTable->model()->index(5, 0));
    QTest::mouseClick(documentsTable->viewport(), Qt::LeftButton, Qt::NoModifier, cRow.center());
    ASSERT_EQ(documents->selectedRow(), 5);
    LinksView* links = app.linksView();
    EXPECT_EQ(links->title(), "3 liens vers le document sélectionné");
    ASSERT_EQ(links->numberOfRowsInTableView(), 3);
    QStringList fromDatabase;
    for (const auto& link : db.links())
        if (link.target == s(U("/c.html")))
            fromDatabase << q(link.anchor + " | " + link.source);
    QStringList shownLinks;
    QTableView* linksTable = links->linksTableView();
    for (int row = 0; row < 3; ++row) {
        shownLinks << linksTable->model()->index(row, 0).data().toString() + " | "
                          + linksTable->model()->index(row, 1).data().toString();
        const auto source = db.page(s(linksTable->model()->index(row, 1).data().toString()));
        ASSERT_TRUE(source);
        EXPECT_EQ(linksTable->model()->index(row, 2).data().toString(), QString::number(source->depth));
        EXPECT_EQ(linksTable->model()->index(row, 3).data().toString(), QString::number(source->out));
    }
    QStringList sortedShown = shownLinks;
    sortedShown.sort();
    fromDatabase.sort();
    EXPECT_EQ(sortedShown, fromDatabase);
    EXPECT_EQ(fromDatabase, QStringList({"C depuis A | " + U("/a.html"), "C depuis B | " + U("/b.html"),
                                         "C depuis la lente | " + U("/slow.html")}));

    // The filter sheet: 404, HTML only, validate.
    ASSERT_TRUE(panel->buttonFiltres()->isVisible());
    ASSERT_TRUE(panel->buttonFiltres()->isEnabled());
    QTest::mouseClick(panel->buttonFiltres(), Qt::LeftButton);
    PagesFilterWindowController* filters = app.controller()->pageFilterWindowController();
    ASSERT_TRUE(filters);
    ASSERT_TRUE(waitUntil([&] { return filters->isVisible(); }, 5000));
    QTest::mouseClick(filters->check404(), Qt::LeftButton);
    ASSERT_TRUE(filters->check404()->isChecked());
    QTest::mouseClick(filters->radio404OnlyHTML(), Qt::LeftButton);
    ASSERT_TRUE(filters->radio404OnlyHTML()->isChecked());
    QTest::mouseClick(filters->buttonLocValider(), Qt::LeftButton);
    ASSERT_TRUE(waitUntil([&] { return !filters->isVisible(); }, 5000));
    EXPECT_EQ(app.app()->currentFilter(), 2);
    EXPECT_EQ(documents->title(), "1 document en 404 de type HTML référencé");
    ASSERT_EQ(documents->numberOfRowsInTableView(), 1);
    EXPECT_EQ(documents->cellText("IdtURL", 0), U("/missing.html"));
    EXPECT_EQ(documents->cellText("IdtTitle", 0), q(db.at(s(U("/missing.html"))).title));
    EXPECT_EQ(links->numberOfRowsInTableView(), 0);
    EXPECT_EQ(links->title(), "3 liens vers le document sélectionné");
}
