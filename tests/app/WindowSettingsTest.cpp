// What the window remembers from one run of the program to the next: two launches over the
// same data and settings directories, the first quitting as a user quits.
#include "AppTestSupport.h"

#include "app/NewProjectWindowController.h"
#include "app/SplitView.h"
#include "store/LinkRules.h"

#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QTableView>
#include <QTest>

using namespace apptest;

namespace {

QHeaderView* documentsHeader(LaunchedApp& app)
{
    return app.documentsView()->documentsTableView()->horizontalHeader();
}

QHeaderView* linksHeader(LaunchedApp& app)
{
    return app.linksView()->linksTableView()->horizontalHeader();
}

// Makes a project through the new-project sheet, as a user does.
void makeProjectThroughTheSheet(LaunchedApp& app, const QString& name, bool web)
{
    app.app()->createProject();
    NewProjectWindowController* sheet = app.controller()->projectWindowController();
    ASSERT_TRUE(sheet);
    sheet->textFieldName()->setText(name);
    sheet->textFieldURL()->setText("http://127.0.0.1:9/" + name);
    sheet->popUpLinkRules()->setCurrentIndex(web ? 1 : 0);
    sheet->buttonLocValider()->click();
    ASSERT_FALSE(sheet->isVisible());
}

} // namespace

TEST(WindowSettings, TheWindowIsAsItWasLeftAfterARestart)
{
    QTemporaryDir home;
    QList<int> splitter;
    QByteArray geometry;
    int titleWidth = 0;
    int anchorWidth = 0;
    {
        LaunchedApp app(home.path());
        app.window()->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
        // Nothing remembered yet: the described layout.
        EXPECT_EQ(documentsHeader(app)->visualIndex(1), 1);
        app.window()->resize(1040, 780);
        app.window()->move(40, 30);
        waitUntil([] { return false; }, 50);
        SplitView* split = app.controller()->splitView();
        split->setSizes({150, 260, 250, 100});
        splitter = split->sizes();
        documentsHeader(app)->resizeSection(1, 333);
        // The depth column dragged before the title.
        documentsHeader(app)->moveSection(documentsHeader(app)->visualIndex(2), 1);
        linksHeader(app)->resizeSection(0, 177);
        titleWidth = documentsHeader(app)->sectionSize(1);
        anchorWidth = linksHeader(app)->sectionSize(0);
        geometry = app.window()->saveGeometry();
        app.window()->menuItemLocQuitQuillmere->trigger();
        ASSERT_EQ(app.terminations, 1);
    }
    LaunchedApp app(home.path());
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    EXPECT_EQ(app.window()->size(), QSize(1040, 780));
    EXPECT_EQ(app.controller()->splitView()->sizes(), splitter);
    EXPECT_EQ(documentsHeader(app)->sectionSize(1), titleWidth);
    EXPECT_EQ(documentsHeader(app)->visualIndex(2), 1);
    EXPECT_EQ(documentsHeader(app)->visualIndex(1), 2);
    EXPECT_EQ(linksHeader(app)->sectionSize(0), anchorWidth);
}

TEST(WindowSettings, TheLastProjectIsShownAgainAtStartAndListedInOpenRecent)
{
    QTemporaryDir home;
    {
        LaunchedApp app(home.path());
        EXPECT_FALSE(app.window()->menuItemLocOpenRecent->isEnabled());
        makeProjectThroughTheSheet(app, "alpha", false);
        makeProjectThroughTheSheet(app, "beta", false);
        EXPECT_TRUE(app.window()->menuItemLocOpenRecent->isEnabled());
        ASSERT_TRUE(app.documentsView()->currentProject());
        EXPECT_EQ(app.documentsView()->currentProject()->name(), "beta");
        app.app()->quit();
        ASSERT_EQ(app.terminations, 1);
    }
    {
        LaunchedApp app(home.path());
        ASSERT_TRUE(app.documentsView()->currentProject());
        EXPECT_EQ(app.documentsView()->currentProject()->name(), "beta");
        EXPECT_EQ(app.progressView()->textFieldProjectName()->text(), "beta");
        // Ouvrir récent: the most recent first; choosing one shows it.
        ASSERT_TRUE(app.window()->menuItemLocOpenRecent->isEnabled());
        Q_EMIT app.window()->menuLocOpenRecent->aboutToShow();
        const QList<QAction*> items = app.window()->menuLocOpenRecent->actions();
        ASSERT_EQ(items.size(), 2);
        EXPECT_EQ(items[0]->text(), "beta");
        EXPECT_EQ(items[1]->text(), "alpha");
        items[1]->trigger();
        ASSERT_TRUE(app.documentsView()->currentProject());
        EXPECT_EQ(app.documentsView()->currentProject()->name(), "alpha");
        Q_EMIT app.window()->menuLocOpenRecent->aboutToShow();
        EXPECT_EQ(app.window()->menuLocOpenRecent->actions().value(0)->text(), "alpha");
        app.app()->quit();
    }
    {
        LaunchedApp app(home.path());
        ASSERT_TRUE(app.documentsView()->currentProject());
        EXPECT_EQ(app.documentsView()->currentProject()->name(), "alpha");
        // Closed by hand: the next start shows no project.
        app.window()->menuItemLocClose->trigger();
        app.app()->quit();
    }
    LaunchedApp app(home.path());
    EXPECT_FALSE(app.documentsView()->currentProject());
    EXPECT_TRUE(app.window()->menuItemLocOpenRecent->isEnabled());
}

TEST(WindowSettings, ARecentProjectDeletedMeanwhileIsTakenOffTheList)
{
    QTemporaryDir home;
    {
        LaunchedApp app(home.path());
        makeProjectThroughTheSheet(app, "gone", false);
        makeProjectThroughTheSheet(app, "kept", false);
        app.app()->quit();
    }
    {
        // Another program deletes it.
        LaunchedApp app(home.path());
        ASSERT_TRUE(Project::getProjectWithName("gone"));
        Project::deleteProjectWithName("gone");
        app.app()->saveContext();
        ASSERT_FALSE(Project::getProjectWithName("gone"));
    }
    LaunchedApp app(home.path());
    Alert::queueAnswer(Alert::FirstButtonReturn);
    Q_EMIT app.window()->menuLocOpenRecent->aboutToShow();
    QList<QAction*> items = app.window()->menuLocOpenRecent->actions();
    ASSERT_EQ(items.size(), 2);
    ASSERT_EQ(items[1]->text(), "gone");
    items[1]->trigger();
    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_EQ(Alert::shownAlerts()[0].messageText, QString::fromUtf8("Le projet « gone » n'existe plus."));
    EXPECT_EQ(app.documentsView()->currentProject()->name(), "kept");
    Q_EMIT app.window()->menuLocOpenRecent->aboutToShow();
    items = app.window()->menuLocOpenRecent->actions();
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0]->text(), "kept");
}

TEST(WindowSettings, TheLinkRulesLastChosenAreOfferedFirst)
{
    QTemporaryDir home;
    {
        LaunchedApp app(home.path());
        app.app()->createProject();
        EXPECT_EQ(app.controller()->projectWindowController()->popUpLinkRules()->currentIndex(), 0);
        app.controller()->projectWindowController()->buttonLocAnnuler()->click();
        makeProjectThroughTheSheet(app, "navigateur", true);
        app.app()->createProject();
        EXPECT_EQ(app.controller()->projectWindowController()->linkRules(), LinkRules::Web);
        app.controller()->projectWindowController()->buttonLocAnnuler()->click();
        app.app()->quit();
    }
    {
        LaunchedApp app(home.path());
        app.app()->createProject();
        NewProjectWindowController* sheet = app.controller()->projectWindowController();
        EXPECT_EQ(sheet->popUpLinkRules()->currentIndex(), 1);
        EXPECT_EQ(sheet->linkRules(), LinkRules::Web);
        sheet->buttonLocAnnuler()->click();
        makeProjectThroughTheSheet(app, "classique", false);
        app.app()->quit();
    }
    LaunchedApp app(home.path());
    app.app()->createProject();
    EXPECT_EQ(app.controller()->projectWindowController()->linkRules(), LinkRules::Classic);
}
