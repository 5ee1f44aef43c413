// A crawl sent to the background from its progress sheet: the sheet goes, the crawl goes on
// with its progress in the status bar, the window can be used, and the sheet comes back from
// the status bar or the Fenêtre menu; stopping and ending are as they always were.
#include "CrawlWindowSupport.h"

#include "app/CrawlStatusBar.h"
#include "store/QuillmereDownloaderQueue.h"
#include "support/StallingSite.h"

#include <QAction>
#include <QTableView>
#include <QTest>

using namespace apptest;
using crawltest::anchor;

namespace {

class BackgroundCrawlTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(site.start());
        // "/" -> a.html and stall.html, which hangs until released.
        site.page("/", "Home", anchor("a.html", "A") + anchor("stall.html", "Stall"));
        site.page("/a.html", "A", "");
        site.page("/stall.html", "Stall", "");
        app.window()->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
        project = app.createAndShowProject(QStringLiteral("site"), QString::fromStdString(site.base() + "/"));
    }

    CrawlStatusBar* statusBar() const { return app.window()->crawlStatusBar(); }
    QString statusText() const { return statusBar()->progressLabel()->text(); }

    // Starts the crawl and waits until it hangs on /stall.html, the sheet up.
    ProgressWindowController* startAndHang()
    {
        app.progressView()->buttonLancer()->click();
        ProgressWindowController* sheet = app.controller()->progressWindowController();
        EXPECT_TRUE(sheet && sheet->isVisible());
        EXPECT_TRUE(waitUntil([&] { return site.hits("/stall.html") == 1; }));
        return sheet;
    }

    StallingSite site{StallingSite::Stall::AfterHeaders};
    LaunchedApp app;
    ProjectPtr project;
};

} // namespace

TEST_F(BackgroundCrawlTest, TheSheetGoesTheCrawlGoesOnInTheStatusBarAndTheSheetComesBack)
{
    CrawlEnds ends(app.controller());
    ProgressWindowController* sheet = startAndHang();
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->buttonBackground()->text(), "Continuer en arrière-plan");
    EXPECT_EQ(QApplication::activeModalWidget(), sheet);
    EXPECT_TRUE(statusText().isEmpty());
    EXPECT_FALSE(app.window()->menuItemLocShowProgress->isEnabled());

    sheet->buttonBackground()->click();
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_TRUE(app.controller()->isBusy());
    // Nothing modal any more: the lists and menus are the user's.
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    ASSERT_TRUE(waitUntil([&] { return !statusText().isEmpty(); }, 3000));
    EXPECT_EQ(statusText(), QString::fromUtf8("Analyse en arrière-plan : 3 pages analysées, profondeur 2 — %1")
                                .arg(q(site.base() + "/stall.html")));
    EXPECT_EQ(statusBar()->toolTip(), QString::fromUtf8("Cliquez pour afficher la progression de l'analyse"));
    EXPECT_TRUE(app.window()->menuItemLocShowProgress->isEnabled());
    EXPECT_EQ(app.window()->menuItemLocShowProgress->text(), QString::fromUtf8("Afficher la progression de l'analyse"));
    // The project being crawled stays open under the crawl.
    EXPECT_FALSE(app.window()->menuItemLocNew->isEnabled());
    EXPECT_FALSE(app.window()->menuItemLocOpen->isEnabled());
    EXPECT_FALSE(app.window()->menuItemLocClose->isEnabled());
    EXPECT_FALSE(app.window()->toolBarItemLocNewProject->isEnabled());
    // The panel shows the crawl's progress too.
    EXPECT_EQ(app.progressView()->textFieldPageAnalysees()->text(), "3");
    // A click on the lists reaches them.
    QTest::mouseClick(app.documentsView()->documentsTableView()->viewport(), Qt::LeftButton);
    EXPECT_TRUE(app.documentsView()->documentsTableView()->hasFocus() || !app.window()->isActiveWindow());

    // A click on the status bar brings the sheet back.
    QTest::mouseClick(statusBar(), Qt::LeftButton);
    EXPECT_TRUE(sheet->isVisible());
    EXPECT_EQ(sheet->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(statusText().isEmpty());
    EXPECT_FALSE(app.window()->menuItemLocShowProgress->isEnabled());

    // Away again, and back through the Fenêtre menu.
    sheet->buttonBackground()->click();
    ASSERT_TRUE(waitUntil([&] { return app.window()->menuItemLocShowProgress->isEnabled(); }, 3000));
    app.window()->menuItemLocShowProgress->trigger();
    EXPECT_TRUE(sheet->isVisible());

    // Away once more, then the crawl ends as every crawl does.
    sheet->buttonBackground()->click();
    site.release();
    ASSERT_TRUE(ends.waitFor(1, 20000));
    EXPECT_EQ(ends.count, 1);
    EXPECT_FALSE(sheet->isVisible());
    EXPECT_EQ(project->pages_count(), 3);
    EXPECT_EQ(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project), 0);
    EXPECT_TRUE(project->crawler_stop_date().isValid());
    EXPECT_EQ(storedProjectAttributes(app.app(), QStringLiteral("site")).value(QStringLiteral("pages_count")).toInt(), 3);
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), 3);
    EXPECT_TRUE(app.progressView()->buttonLancer()->isEnabled());
    ASSERT_TRUE(waitUntil([&] { return statusText().isEmpty() && app.window()->menuItemLocNew->isEnabled(); }, 3000));
    EXPECT_FALSE(app.window()->menuItemLocShowProgress->isEnabled());
    EXPECT_TRUE(app.window()->menuItemLocOpen->isEnabled());
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
}

TEST_F(BackgroundCrawlTest, TheSheetBroughtBackStopsTheCrawlAsBefore)
{
    CrawlEnds ends(app.controller());
    ProgressWindowController* sheet = startAndHang();
    ASSERT_TRUE(sheet);
    sheet->buttonBackground()->click();
    ASSERT_TRUE(waitUntil([&] { return statusBar()->isCrawlInBackground(); }, 3000));
    QTest::mouseClick(statusBar(), Qt::LeftButton);
    ASSERT_TRUE(sheet->isVisible());
    sheet->buttonStop()->click();
    ASSERT_TRUE(ends.waitFor(1, 5000));
    // The hanging page is neither counted nor done, as with a stop that never left the sheet.
    EXPECT_EQ(project->pages_count(), 2);
    EXPECT_EQ(QuillmereDownloaderQueue::countWaitingDownloaderQueueForProject(project), 1);
    EXPECT_FALSE(sheet->isVisible());
    ASSERT_TRUE(waitUntil([&] { return !statusBar()->isBusy(); }, 3000));
    EXPECT_TRUE(statusText().isEmpty());
    site.release();
}
