// The main window's controller: how a crawl starts (at once, or after the restart or the
// continue question), the counters it keeps while a crawl runs, the records it writes for
// the crawler, the preview that never leaves its page, the divider limits, the error alert
// and the closing of a project.

#include "CrawlWindowSupport.h"

#include "app/SplitView.h"
#include "app/WebPreviewPage.h"
#include "crawler/DownloaderOperationLibXML.h"
#include "store/Localization.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmereLink.h"
#include "store/ProjectLock.h"
#include "store/QuillmerePage.h"

#include <QFileInfo>
#include <QSplitterHandle>
#include <QWebEngineView>

using namespace apptest;
using crawltest::anchor;
using Localization::localizedString;

namespace {

class MainViewControllerTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.started());
        // "/" (depth 1) -> a, b, c (depth 2); a -> d (depth 3).
        site.page("/", "Home", anchor("a.html", "A") + anchor("b.html", "B") + anchor("c.html", "C"));
        site.page("/a.html", "A", anchor("d.html", "D") + anchor("/", "Home"));
        site.page("/b.html", "B", anchor("/", "Home"));
        site.page("/c.html", "C", "");
        site.page("/d.html", "D", anchor("a.html", "A"));
    }

    MainViewController* controller() const { return app.controller(); }
    QString U(const std::string& path) const { return site.U(path); }
    qint64 pageRecords() const { return QuillmerePage::countPagesForProject(project); }
    qint64 waiting() const { return QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project); }
    int rows() const { return app.documentsView()->numberOfRowsInTableView(); }

    void showProject(qint32 limitPageCount = -1)
    {
        project = app.createAndShowProject(QStringLiteral("site"), U("/"), -1, limitPageCount);
        ASSERT_TRUE(project);
    }
    // The whole site crawled: 5 pages, nothing waiting.
    void crawlWholeSite()
    {
        showProject();
        ASSERT_TRUE(app.crawlThroughStartButton());
        ASSERT_EQ(pageRecords(), 5);
        ASSERT_EQ(waiting(), 0);
        ASSERT_EQ(rows(), 5);
        Alert::clearForTesting();
    }
    // A crawl cut by a page limit of 1: "/" and a.html analysed, b, c and d still waiting.
    void crawlInterrupted()
    {
        showProject(1);
        ASSERT_TRUE(app.crawlThroughStartButton());
        ASSERT_EQ(pageRecords(), 5);
        ASSERT_EQ(waiting(), 3);
        ASSERT_EQ(rows(), 2);
        ASSERT_EQ(project->pages_count(), 2);
        Alert::clearForTesting();
    }

    void expectPanelIdle()
    {
        EXPECT_FALSE(app.progressView()->buttonLancer()->isHidden());
        EXPECT_TRUE(app.progressView()->buttonLancer()->isEnabled());
        EXPECT_FALSE(controller()->isBusy());
    }

    crawltest::Site site;
    LaunchedApp app;
    ProjectPtr project;
};

TEST_F(MainViewControllerTest, EmptyDatabaseStartsAtOnceWithoutAsking)
{
    showProject();
    ASSERT_EQ(pageRecords(), 0);
    CrawlEnds ends(controller());

    app.progressView()->buttonLancer()->click();

    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
    EXPECT_TRUE(controller()->isBusy());
    ASSERT_TRUE(controller()->downloaderOperation());
    EXPECT_EQ(controller()->currentProject(), project);
    ASSERT_TRUE(controller()->progressWindowController());
    EXPECT_EQ(controller()->progressWindowController()->project(), project);
    ASSERT_TRUE(ends.waitFor());
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
    EXPECT_EQ(pageRecords(), 5);
}

TEST_F(MainViewControllerTest, FinishedCrawlAsksTwoButtonsAndRestartKeepsTheListUntilTheCrawlEnds)
{
    crawlWholeSite();
    Alert::queueAnswer(1000);
    CrawlEnds ends(controller());

    app.progressView()->buttonLancer()->click();

    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    const Alert::Shown alert = Alert::shownAlerts().first();
    EXPECT_EQ(alert.messageText, localizedString("MainViewAlertStartRestartMessageText"));
    EXPECT_EQ(alert.messageText, frenchText("MainViewAlertStartRestartMessageText"));
    EXPECT_TRUE(alert.informativeText.isEmpty());
    EXPECT_EQ(alert.buttons, QStringList({localizedString("MainViewAlertStartRestartDefaultButton"),
                                          localizedString("MainViewAlertStartRestartAlternateButton")}));
    EXPECT_EQ(alert.buttons, QStringList({frenchText("MainViewAlertStartRestartDefaultButton"),
                                          frenchText("MainViewAlertStartRestartAlternateButton")}));
    // Truncated and restarted, but the list still shows the last crawl's pages.
    EXPECT_EQ(pageRecords(), 0);
    EXPECT_EQ(project->pages_count(), 0);
    EXPECT_EQ(project->max_depth(), 0);
    EXPECT_EQ(rows(), 5);
    EXPECT_TRUE(controller()->isBusy());
    ASSERT_TRUE(controller()->progressWindowController());

    ASSERT_TRUE(ends.waitFor());
    EXPECT_EQ(pageRecords(), 5);
    EXPECT_EQ(rows(), 5);
    // Counted afresh, not on top of the first crawl's 5.
    EXPECT_EQ(project->pages_count(), 5);
    EXPECT_EQ(site.hits("/"), 2);
}

TEST_F(MainViewControllerTest, FinishedCrawlSecondButtonOnlyStopsThePanel)
{
    crawlWholeSite();
    const auto before = pageLines(project, site.base());
    const auto operation = controller()->downloaderOperation();
    const size_t requests = site.server.requestCount();
    Alert::queueAnswer(1001);

    app.progressView()->buttonLancer()->click();

    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_EQ(Alert::shownAlerts().first().buttons.size(), 2);
    expectPanelIdle();
    EXPECT_EQ(controller()->downloaderOperation(), operation);
    EXPECT_FALSE(controller()->progressWindowController()->isVisible());
    waitUntil([] { return false; }, 200);
    EXPECT_EQ(pageLines(project, site.base()), before);
    EXPECT_EQ(project->pages_count(), 5);
    EXPECT_EQ(rows(), 5);
    EXPECT_EQ(site.server.requestCount(), requests);
}

TEST_F(MainViewControllerTest, InterruptedCrawlAsksThreeButtonsAndContinueGoesOnFromTheQueue)
{
    crawlInterrupted();
    project->setLimit_page_count(-1);
    app.app()->saveContext();
    Alert::queueAnswer(1001);
    CrawlEnds ends(controller());

    app.progressView()->buttonLancer()->click();

    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    const Alert::Shown alert = Alert::shownAlerts().first();
    EXPECT_EQ(alert.messageText, localizedString("MainViewAlertStartContinueMessageText"));
    EXPECT_EQ(alert.messageText, frenchText("MainViewAlertStartContinueMessageText"));
    EXPECT_TRUE(alert.informativeText.isEmpty());
    EXPECT_EQ(alert.buttons, QStringList({localizedString("MainViewAlertStartContinueOtherButton"),
                                          localizedString("MainViewAlertStartContinueAlternateButton"),
                                          localizedString("MainViewAlertStartContinueDefaultButton")}));
    EXPECT_EQ(alert.buttons, QStringList({frenchText("MainViewAlertStartContinueOtherButton"),
                                          frenchText("MainViewAlertStartContinueAlternateButton"),
                                          frenchText("MainViewAlertStartContinueDefaultButton")}));
    // Nothing truncated.
    EXPECT_EQ(pageRecords(), 5);
    EXPECT_EQ(rows(), 2);
    EXPECT_TRUE(controller()->isBusy());

    ASSERT_TRUE(ends.waitFor());
    EXPECT_EQ(waiting(), 0);
    EXPECT_EQ(pageRecords(), 5);
    EXPECT_EQ(rows(), 5);
    for (const char* path : {"/", "/a.html", "/b.html", "/c.html", "/d.html"}) {
        EXPECT_EQ(site.hits(path), 1) << path;
        QuillmerePagePtr page = QuillmerePage::getPageFromURL(U(path), project);
        ASSERT_TRUE(page) << path;
        EXPECT_FALSE(page->title().isEmpty()) << path;
    }
    // The pages of the first run count on: 2 then b, c and d.
    EXPECT_EQ(project->pages_count(), 5);
    EXPECT_EQ(project->max_depth(), 3);
}

TEST_F(MainViewControllerTest, InterruptedCrawlThirdButtonEmptiesTheListAtOnceAndRestarts)
{
    crawlInterrupted();
    Alert::queueAnswer(1002);
    CrawlEnds ends(controller());

    app.progressView()->buttonLancer()->click();

    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_EQ(Alert::shownAlerts().first().buttons.size(), 3);
    EXPECT_EQ(pageRecords(), 0);
    EXPECT_EQ(waiting(), 0);
    EXPECT_EQ(project->pages_count(), 0);
    EXPECT_EQ(project->max_depth(), 0);
    EXPECT_EQ(rows(), 0);
    EXPECT_TRUE(controller()->isBusy());

    ASSERT_TRUE(ends.waitFor());
    // The same limited crawl from scratch.
    EXPECT_EQ(project->pages_count(), 2);
    EXPECT_EQ(waiting(), 3);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(site.hits("/"), 2);
}

TEST_F(MainViewControllerTest, InterruptedCrawlFirstButtonOnlyStopsThePanel)
{
    crawlInterrupted();
    project->setLimit_page_count(-1);
    const auto before = pageLines(project, site.base());
    const auto operation = controller()->downloaderOperation();
    const size_t requests = site.server.requestCount();
    Alert::queueAnswer(1000);

    app.progressView()->buttonLancer()->click();

    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_EQ(Alert::shownAlerts().first().buttons.size(), 3);
    expectPanelIdle();
    EXPECT_EQ(controller()->downloaderOperation(), operation);
    waitUntil([] { return false; }, 200);
    EXPECT_EQ(pageLines(project, site.base()), before);
    EXPECT_EQ(waiting(), 3);
    EXPECT_EQ(rows(), 2);
    EXPECT_EQ(site.server.requestCount(), requests);
}

TEST_F(MainViewControllerTest, PageCountStartsFromTheStoredCountAndMaxDepthKeepsTheDeepest)
{
    crawlWholeSite();
    project->setPages_count(10);
    project->setMax_depth(4);

    controller()->downloaderDidStart();
    EXPECT_EQ(controller()->pageCount(), 10);
    EXPECT_EQ(controller()->maxDepth(), 4);

    controller()->downloadPageDidStartWithURL(U("/x.html"), 2);
    EXPECT_EQ(controller()->pageCount(), 11);
    EXPECT_EQ(controller()->maxDepth(), 4);
    EXPECT_EQ(project->pages_count(), 11);
    // The progress reaches the panel through the event loop, as it does from the crawler.
    EXPECT_TRUE(waitUntil([&] { return app.progressView()->textFieldPageAnalysees()->text() == QStringLiteral("11"); },
                          2000));
    EXPECT_EQ(app.progressView()->textFieldDepth()->text(), QStringLiteral("2"));

    controller()->downloadPageDidStartWithURL(U("/y.html"), 6);
    EXPECT_EQ(controller()->pageCount(), 12);
    EXPECT_EQ(controller()->maxDepth(), 6);
    controller()->downloadPageDidStartWithURL(U("/z.html"), 5);
    EXPECT_EQ(controller()->maxDepth(), 6);
    EXPECT_EQ(controller()->pageCount(), 13);
}

TEST_F(MainViewControllerTest, LinkToAnUnseenUrlCreatesItsPageWithAnEmptyTitleFirst)
{
    crawlWholeSite();
    QuillmerePagePtr source = QuillmerePage::getPageFromURL(U("/c.html"), project);
    ASSERT_TRUE(source);
    const qint64 sourceOut = source->outLinkCount();
    ASSERT_FALSE(QuillmerePage::getPageFromURL(U("/new.html"), project));

    EXPECT_TRUE(controller()->foundLinkWithPath(QStringLiteral("/"), QStringLiteral("new.html"), QStringLiteral("New"),
                                                U("/new.html"), 3, source));

    QuillmerePagePtr target = QuillmerePage::getPageFromURL(U("/new.html"), project);
    ASSERT_TRUE(target);
    EXPECT_EQ(target->title(), QString(""));
    EXPECT_FALSE(target->title().isNull());
    EXPECT_EQ(target->depth(), 3);
    EXPECT_EQ(target->inLinkCount(), 1);
    EXPECT_EQ(QuillmerePage::getPageFromURL(U("/c.html"), project)->outLinkCount(), sourceOut + 1);
    const auto links = QuillmereLink::getSourcesLinksFromPage(target, project);
    ASSERT_EQ(links.size(), 1);
    EXPECT_EQ(links.first()->idt_source(), source->idt());
    EXPECT_EQ(links.first()->idt_page(), target->idt());
    EXPECT_EQ(links.first()->anchor(), QStringLiteral("New"));
    // The counter is the source's incoming count.
    EXPECT_EQ(links.first()->counter(), source->inLinkCount());

    // A second link to it finds the page instead of making another.
    EXPECT_TRUE(controller()->foundLinkWithPath(QStringLiteral("/"), QStringLiteral("new.html"), QStringLiteral("Again"),
                                                U("/new.html"), 3, source));
    EXPECT_EQ(pageRecords(), 6);
    EXPECT_EQ(QuillmereLink::getSourcesLinksFromPage(target, project).size(), 2);
    EXPECT_EQ(QuillmerePage::getPageFromURL(U("/new.html"), project)->inLinkCount(), 2);
}

// Runs a script in the preview once its welcome page is there.
class PreviewTest : public MainViewControllerTest {
protected:
    WebPreviewPage* page() const { return controller()->webPage(); }

    QVariant evaluate(const QString& script)
    {
        bool done = false;
        QVariant result;
        page()->runJavaScript(script, [&](const QVariant& value) {
            result = value;
            done = true;
        });
        EXPECT_TRUE(waitUntil([&] { return done; }, 10000)) << script.toStdString();
        return result;
    }
    bool waitForWelcomePage()
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 20000) {
            if (evaluate(QStringLiteral("document.getElementById('docs') !== null")).toBool())
                return true;
            waitUntil([] { return false; }, 50);
        }
        return false;
    }
    void expectStillWelcomePage()
    {
        EXPECT_EQ(page()->url(), WebPreviewPage::promotionalPageURL());
        EXPECT_EQ(evaluate(QStringLiteral("location.href")).toString(), WebPreviewPage::promotionalPageURL().toString());
        EXPECT_TRUE(evaluate(QStringLiteral("document.getElementById('news') !== null")).toBool());
    }
};

TEST_F(PreviewTest, ClickedLinkOpensTheBrowserAndThePreviewStays)
{
    EXPECT_EQ(controller()->webView()->page(), page());
    ASSERT_TRUE(waitForWelcomePage());
    const int refusedBefore = page()->refusedNavigationCount();

    evaluate(QStringLiteral("document.getElementById('docs').click()"));
    ASSERT_TRUE(waitUntil([&] { return !app.openedURLs.empty(); }, 10000));
    waitUntil([] { return false; }, 300);

    ASSERT_EQ(app.openedURLs.size(), 1u);
    EXPECT_EQ(app.openedURLs.front(), QUrl(QStringLiteral("https://quillmere.org/docs")));
    EXPECT_EQ(page()->refusedNavigationCount(), refusedBefore + 1);
    expectStillWelcomePage();
}

TEST_F(PreviewTest, NewWindowLinkIsRefused)
{
    ASSERT_TRUE(waitForWelcomePage());

    evaluate(QStringLiteral("document.getElementById('news').click()"));
    ASSERT_TRUE(waitUntil([&] { return page()->refusedNewWindowCount() == 1; }, 10000));
    waitUntil([] { return false; }, 300);

    EXPECT_EQ(page()->refusedNewWindowCount(), 1);
    EXPECT_TRUE(app.openedURLs.empty());
    expectStillWelcomePage();
}

TEST_F(MainViewControllerTest, DividerStopsOneHundredFromEitherEnd)
{
    app.window()->resize(1000, 900);
    app.window()->show();
    SplitView* split = controller()->splitView();
    ASSERT_TRUE(waitUntil([&] { return split->isVisible() && split->height() > 500; }, 5000));
    const int height = split->height();
    const int last = split->count() - 1;
    ASSERT_EQ(split->count(), 4);
    ASSERT_EQ(split->orientation(), Qt::Vertical);

    EXPECT_EQ(split->constrainedPosition(1, 0), 100);
    EXPECT_EQ(split->constrainedPosition(last, height), height - 100);
    EXPECT_EQ(split->constrainedPosition(1, 150), 150);

    // Dragged all the way up: the divider's top edge stays 100 from the top.
    EXPECT_EQ(split->dragDivider(1, 0), 100);
    EXPECT_EQ(split->handle(1)->geometry().top(), 100);
    EXPECT_EQ(split->widget(0)->height(), 100);
    // Free within the limits.
    EXPECT_EQ(split->dragDivider(1, 160), 160);
    EXPECT_EQ(split->widget(0)->height(), 160);

    // Dragged all the way down: the last divider stays 100 from the bottom.
    split->dragDivider(last, height + 50);
    const QRect divider = split->handle(last)->geometry();
    EXPECT_EQ(height - divider.bottom() - 1, 100);
    EXPECT_EQ(split->widget(last)->height(), 100);
    split->dragDivider(last, height - 200);
    EXPECT_EQ(split->handle(last)->geometry().top(), height - 200);
}

TEST_F(MainViewControllerTest, DividerLimitsWithAndWithoutASplitView)
{
    app.window()->resize(900, 700);
    app.window()->show();
    SplitView* split = controller()->splitView();
    ASSERT_TRUE(waitUntil([&] { return split->isVisible() && split->height() > 300; }, 5000));

    EXPECT_EQ(controller()->splitViewConstrainMinCoordinate(split, 3.0, 1), 100.0);
    EXPECT_EQ(controller()->splitViewConstrainMinCoordinate(split, 500.0, 2), 100.0);
    EXPECT_EQ(controller()->splitViewConstrainMinCoordinate(nullptr, 500.0, 2), 100.0);
    EXPECT_EQ(controller()->splitViewConstrainMaxCoordinate(split, 3.0, 1), split->height() - 100.0);
    EXPECT_EQ(controller()->splitViewConstrainMaxCoordinate(nullptr, 3.0, 1), -100.0);

    const int before = split->height();
    app.window()->resize(900, 560);
    ASSERT_TRUE(waitUntil([&] { return split->height() != before; }, 5000));
    EXPECT_EQ(controller()->splitViewConstrainMaxCoordinate(split, 3.0, 1), split->height() - 100.0);
}

TEST_F(MainViewControllerTest, DownloaderErrorShowsItsTextInAOneButtonAlertAndChangesNothing)
{
    crawlWholeSite();
    const auto before = pageLines(project, site.base());
    const auto operation = controller()->downloaderOperation();
    const auto vacuum = controller()->vacuumOperation();
    const QString stopDate = app.progressView()->textFieldEndDate()->text();
    const QString message = QStringLiteral("Attention les URL trouvées dans les pages ne correspondent pas a celle du "
                                           "projet, vérifier si c'est bien http ou https par exemple !");
    Alert::queueAnswer(1000);

    controller()->downloaderEndWithError(message);

    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    const Alert::Shown alert = Alert::shownAlerts().first();
    EXPECT_EQ(alert.messageText, message);
    EXPECT_TRUE(alert.informativeText.isEmpty());
    EXPECT_EQ(alert.buttons, QStringList({localizedString("MainViewAlertDownloadErrorDefaultButton")}));
    EXPECT_EQ(alert.buttons, QStringList({frenchText("MainViewAlertDownloadErrorDefaultButton")}));
    waitUntil([] { return false; }, 200);
    expectPanelIdle();
    EXPECT_EQ(controller()->downloaderOperation(), operation);
    EXPECT_EQ(controller()->vacuumOperation(), vacuum);
    EXPECT_EQ(pageLines(project, site.base()), before);
    EXPECT_EQ(rows(), 5);
    EXPECT_EQ(project->pages_count(), 5);
    EXPECT_EQ(app.progressView()->textFieldEndDate()->text(), stopDate);
    EXPECT_FALSE(controller()->progressWindowController()->isVisible());
}

TEST_F(MainViewControllerTest, ClosingTheProjectEmptiesThePanes)
{
    crawlWholeSite();
    controller()->selectPage(QuillmerePage::getPageFromURL(U("/a.html"), project));
    ASSERT_GT(app.linksView()->numberOfRowsInTableView(), 0);
    ASSERT_TRUE(project->database());

    controller()->closeCurrentProject();

    EXPECT_FALSE(project->database());
    EXPECT_EQ(rows(), 0);
    EXPECT_EQ(app.linksView()->numberOfRowsInTableView(), 0);
    EXPECT_TRUE(app.progressView()->textFieldProjectName()->text().isEmpty());
    EXPECT_TRUE(app.progressView()->textFieldProjectURL()->text().isEmpty());
    EXPECT_TRUE(app.progressView()->textFieldPageAnalysees()->text().isEmpty());
    EXPECT_FALSE(app.progressView()->buttonLancer()->isEnabled());
    EXPECT_TRUE(app.progressView()->buttonFiltres()->isHidden());
    // The project of the last crawl stays the controller's.
    EXPECT_EQ(controller()->currentProject(), project);
}

TEST_F(MainViewControllerTest, CancelWithoutAnOperationDoesNothing)
{
    showProject();
    ASSERT_FALSE(controller()->downloaderOperation());

    controller()->cancelCrawlerForProject(project);
    controller()->stopIndexer();

    EXPECT_FALSE(controller()->downloaderOperation());
    EXPECT_FALSE(controller()->progressWindowController());
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
    expectPanelIdle();
    EXPECT_EQ(app.progressView()->textFieldProjectName()->text(), QStringLiteral("site"));
    EXPECT_EQ(pageRecords(), 0);
    // The project still starts as usual afterwards.
    ASSERT_TRUE(app.crawlThroughStartButton());
    EXPECT_EQ(pageRecords(), 5);
}

TEST_F(MainViewControllerTest, AProjectInUseElsewhereIsNotCrawledAndTheAlertNamesTheProcess)
{
    showProject();
    const QString lockFile = ProjectLock::lockFilePathForDatabase(project->full_sqlite_name());
    auto other = std::make_unique<ProjectLock>(lockFile);  // as a command-line crawl holds it
    ASSERT_EQ(other->tryLock("quillmere crawl"), ProjectLock::Result::Locked);
    Alert::queueAnswer(1000);

    app.progressView()->buttonLancer()->click();

    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    const Alert::Shown alert = Alert::shownAlerts().first();
    EXPECT_EQ(alert.messageText, QStringLiteral("Le projet « site » est déjà utilisé par un autre programme."));
    EXPECT_EQ(alert.informativeText, QStringLiteral("Le processus %1 (quillmere crawl) l'analyse ou le modifie : attendez "
                                                    "qu'il ait fini.").arg(QCoreApplication::applicationPid()));
    EXPECT_EQ(alert.buttons.size(), 1);
    EXPECT_FALSE(controller()->downloaderOperation());
    expectPanelIdle();
    EXPECT_EQ(pageRecords(), 0);

    // Once the other one has finished, the crawl runs, holds the lock, and lets it go.
    other.reset();
    Alert::clearForTesting();
    CrawlEnds ends(controller());
    app.progressView()->buttonLancer()->click();
    EXPECT_TRUE(ProjectLock::isHeld(lockFile));
    ASSERT_TRUE(ends.waitFor());
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
    EXPECT_EQ(pageRecords(), 5);
    EXPECT_FALSE(ProjectLock::isHeld(lockFile));
    EXPECT_FALSE(QFileInfo::exists(lockFile));
}

} // namespace
