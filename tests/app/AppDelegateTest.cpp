// The application delegate: launch, menus and toolbar in French, the project commands and
// the dialogs' decisions, the filters, and whether the application may quit.
#include "AppTestSupport.h"

#include "app/NewProjectWindowController.h"
#include "app/OpenProjectWindowController.h"
#include "app/PagesFilterWindowController.h"
#include "store/ManagedObjectContext.h"
#include "store/PersistentStoreCoordinator.h"

#include <QAction>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMenu>
#include <QTest>

#include <sqlite3.h>

using namespace apptest;

namespace {

using Reply = AppDelegate::TerminateReply;

// Runs one statement on the registry's store file through a connection of its own.
bool execOnRegistryStore(LaunchedApp& app, const char* sql, qint64* firstColumn = nullptr)
{
    const QString path = app.app()->dataModelManager()->persistentStoreCoordinator()->storePath();
    sqlite3* db = nullptr;
    if (sqlite3_open(path.toUtf8().constData(), &db) != SQLITE_OK) {
        sqlite3_close(db);
        return false;
    }
    sqlite3_stmt* statement = nullptr;
    bool ok = sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) == SQLITE_OK;
    if (ok) {
        const int rc = sqlite3_step(statement);
        ok = rc == SQLITE_DONE || rc == SQLITE_ROW;
        if (rc == SQLITE_ROW && firstColumn)
            *firstColumn = sqlite3_column_int64(statement, 0);
    }
    sqlite3_finalize(statement);
    sqlite3_close(db);
    return ok;
}

qint64 savedProjectRows(LaunchedApp& app)
{
    qint64 count = -1;
    EXPECT_TRUE(execOnRegistryStore(app, "select count(*) from Project", &count));
    return count;
}

// Leaves an unsaved project in the registry and takes the store's table away behind the
// application's back, so that the next save fails.
void prepareFailingSave(LaunchedApp& app)
{
    ASSERT_TRUE(Project::createProjectWithName("unsaved", "http://127.0.0.1:9", -1, -1));
    ASSERT_TRUE(app.app()->managedObjectContext()->hasChanges());
    ASSERT_TRUE(execOnRegistryStore(app, "drop table Project"));
}

// The filter sheet as it opens now.
qint32 filterShownByTheDialog(LaunchedApp& app)
{
    app.app()->actionDoFilters();
    PagesFilterWindowController* sheet = app.controller()->pageFilterWindowController();
    EXPECT_TRUE(sheet && sheet->isVisible());
    if (!sheet)
        return -1;
    const qint32 code = sheet->filterAction();
    const bool anyChecked =
        sheet->check404()->isChecked() || sheet->checkNoIndex()->isChecked() || sheet->checkCanonical()->isChecked();
    EXPECT_EQ(anyChecked, code != 0);
    sheet->buttonLocAnnuler()->click();
    return code;
}

QString plain(QString text)
{
    return text.remove(QLatin1Char('&'));
}

} // namespace

TEST(AppDelegate, IsTheSharedDelegateWithNoFilterAndNoProject)
{
    LaunchedApp app;
    EXPECT_EQ(AppDelegate::sharedAppDelegate(), app.app());
    EXPECT_EQ(app.app()->currentFilter(), 0);
    EXPECT_TRUE(app.app()->managedObjectContext());
    EXPECT_FALSE(app.documentsView()->currentProject());
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), 0);
}

TEST(AppDelegate, MenusAndToolbarAreFrench)
{
    LaunchedApp app;
    MainWindow* w = app.window();
    const std::pair<QAction*, const char*> actions[] = {
        {w->toolBarItemLocNewProject, "Nouveau projet"},
        {w->toolBarItemLocOpenProject, "Ouvrir un projet"},
        {w->menuItemLocAbout, "À propos de Quillmere"},
        {w->menuItemLocHideQuillmere, "Masquer Quillmere"},
        {w->menuItemLocHideOthers, "Masquer les autres"},
        {w->menuItemLocShowAll, "Tout afficher"},
        {w->menuItemLocQuitQuillmere, "Quitter Quillmere"},
        {w->menuItemLocFile, "Fichier"},
        {w->menuItemLocNew, "Nouveau projet…"},
        {w->menuItemLocOpen, "Ouvrir un projet…"},
        {w->menuItemLocOpenRecent, "Ouvrir récent"},
        {w->menuItemLocClose, "Fermer le projet"},
        {w->menuItemLocEdit, "Édition"},
        {w->menuItemLocCut, "Couper"},
        {w->menuItemLocCopy, "Copier"},
        {w->menuItemLocPaste, "Coller"},
        {w->menuItemLocWindow, "Fenêtre"},
        {w->menuItemLocMinimize, "Réduire"},
        {w->menuItemLocZoom, "Agrandir"},
        {w->menuItemLocBringAllToFront, "Tout ramener au premier plan"},
        {w->menuItemLocMenuHelp, "Aide"},
        {w->menuItemLocHelp, "Aide de Quillmere"},
    };
    for (const auto& [action, text] : actions) {
        ASSERT_TRUE(action) << text;
        EXPECT_EQ(action->text(), QString::fromUtf8(text));
    }
    const std::pair<QMenu*, const char*> menus[] = {
        {w->menuLocFile, "Fichier"},
        {w->menuLocEdit, "Édition"},
        {w->menuLocWindow, "Fenêtre"},
        {w->menuLocMenuHelp, "Aide"},
    };
    for (const auto& [menu, text] : menus) {
        ASSERT_TRUE(menu) << text;
        EXPECT_EQ(menu->title(), QString::fromUtf8(text));
    }
}

TEST(AppDelegate, QtsOwnTextsAreFrench)
{
    LaunchedApp app;
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), "Annuler");
    QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    EXPECT_EQ(plain(box.button(QDialogButtonBox::Cancel)->text()), "Annuler");
}

TEST(AppDelegate, UrlWithoutDiese)
{
    EXPECT_EQ(AppDelegate::urlWithoutDieseFromURL("http://example.com/page.html#part"),
              "[http://example.com/page.html#part] --> [http://example.com/page.html]");
    EXPECT_EQ(AppDelegate::urlWithoutDieseFromURL("http://example.com/page.html"),
              "[http://example.com/page.html] --> [http://example.com/page.html]");
    EXPECT_EQ(AppDelegate::urlWithoutDieseFromURL("http://example.com/#a#b"),
              "[http://example.com/#a#b] --> [http://example.com/]");
    EXPECT_EQ(AppDelegate::urlWithoutDieseFromURL(""), "[] --> []");
}

TEST(AppDelegate, NoChangesTerminatesNow)
{
    LaunchedApp app;
    EXPECT_FALSE(app.app()->managedObjectContext()->hasChanges());
    EXPECT_EQ(app.app()->applicationShouldTerminate(), Reply::TerminateNow);
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
}

TEST(AppDelegate, PendingChangesAreSavedBeforeTerminating)
{
    LaunchedApp app;
    ASSERT_TRUE(Project::createProjectWithName("pending", "http://127.0.0.1:9", -1, -1));
    ASSERT_EQ(savedProjectRows(app), 0);
    EXPECT_EQ(app.app()->applicationShouldTerminate(), Reply::TerminateNow);
    EXPECT_FALSE(app.app()->managedObjectContext()->hasChanges());
    EXPECT_EQ(savedProjectRows(app), 1);
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
}

TEST(AppDelegate, QuitAnywayKeepsTheApplicationRunning)
{
    LaunchedApp app;
    prepareFailingSave(app);
    Alert::queueAnswer(1000);  // the error's OK
    Alert::queueAnswer(1000);  // "Quit anyway"
    EXPECT_EQ(app.app()->applicationShouldTerminate(), Reply::TerminateCancel);
    const auto shown = Alert::shownAlerts();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_EQ(shown[1].messageText, QString::fromUtf8("Les modifications n'ont pas pu être enregistrées. Quitter quand même ?"));
    EXPECT_EQ(shown[1].informativeText,
              QString::fromUtf8("Si vous quittez maintenant, les modifications faites depuis le dernier enregistrement "
                                "réussi seront perdues"));
    EXPECT_EQ(shown[1].buttons, (QStringList{QString::fromUtf8("Quitter quand même"), "Annuler"}));
    EXPECT_EQ(shown[1].answer, 1000);
}

TEST(AppDelegate, CancelInTheSaveFailureAlertQuits)
{
    LaunchedApp app;
    prepareFailingSave(app);
    Alert::queueAnswer(1000);
    Alert::queueAnswer(1001);  // "Cancel"
    EXPECT_EQ(app.app()->applicationShouldTerminate(), Reply::TerminateNow);
    EXPECT_EQ(Alert::shownAlerts().size(), 2);
}

TEST(AppDelegate, TheSaveFailureIsShownBeforeTheQuestion)
{
    LaunchedApp app;
    prepareFailingSave(app);
    Alert::queueAnswer(1000);
    Alert::queueAnswer(1001);
    app.app()->applicationShouldTerminate();
    const auto shown = Alert::shownAlerts();
    ASSERT_EQ(shown.size(), 2);
    EXPECT_FALSE(shown[0].messageText.isEmpty());
    EXPECT_EQ(shown[0].buttons, QStringList{"OK"});
}

TEST(AppDelegate, QuitFromTheMenuTerminates)
{
    LaunchedApp app;
    app.window()->menuItemLocQuitQuillmere->trigger();
    EXPECT_EQ(app.terminations, 1);
    EXPECT_TRUE(app.app()->isTerminating());
}

TEST(AppDelegate, QuitAnywayFromTheMenuDoesNotTerminate)
{
    LaunchedApp app;
    prepareFailingSave(app);
    Alert::queueAnswer(1000);
    Alert::queueAnswer(1000);
    app.app()->quit();
    EXPECT_EQ(app.terminations, 0);
    EXPECT_FALSE(app.app()->isTerminating());
}

TEST(AppDelegate, ClosingTheMainWindowQuits)
{
    LaunchedApp app;
    app.createAndShowProject("site", "http://127.0.0.1:9");
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    EXPECT_TRUE(app.window()->close());
    EXPECT_EQ(app.terminations, 1);
    EXPECT_FALSE(app.window()->isVisible());
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), 0);
}

TEST(AppDelegate, ClosingTheMainWindowStaysOpenWhenQuittingIsRefused)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    prepareFailingSave(app);
    Alert::queueAnswer(1000);
    Alert::queueAnswer(1000);
    EXPECT_FALSE(app.window()->close());
    EXPECT_EQ(app.terminations, 0);
    EXPECT_TRUE(app.window()->isVisible());
}

TEST(AppDelegate, ToolbarAndMenuItemsOpenTheSheets)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.window()->toolBarItemLocNewProject->trigger();
    ASSERT_TRUE(app.controller()->projectWindowController());
    EXPECT_TRUE(app.controller()->projectWindowController()->isVisible());
    EXPECT_EQ(app.controller()->projectWindowController()->parentWindow(), app.window());
    app.controller()->projectWindowController()->buttonLocAnnuler()->click();

    app.window()->menuItemLocOpen->trigger();
    ASSERT_TRUE(app.controller()->openProjectWindowController());
    EXPECT_TRUE(app.controller()->openProjectWindowController()->isVisible());
    app.controller()->openProjectWindowController()->buttonLocAnnuler()->click();
    EXPECT_FALSE(app.controller()->openProjectWindowController()->isVisible());
}

TEST(AppDelegate, CreatingAProjectResetsTheFilter)
{
    LaunchedApp app;
    app.window()->show();
    app.createAndShowProject("site", "http://127.0.0.1:9");
    app.app()->doFilter404NotHTML();
    ASSERT_EQ(app.app()->currentFilter(), 3);
    app.app()->createProject();
    EXPECT_EQ(app.app()->currentFilter(), 0);
    NewProjectWindowController* sheet = app.controller()->projectWindowController();
    ASSERT_TRUE(sheet);
    sheet->textFieldName()->setText("other");
    sheet->textFieldURL()->setText("http://127.0.0.1:9/other");
    sheet->buttonLocValider()->click();
    EXPECT_EQ(filterShownByTheDialog(app), 0);
}

TEST(AppDelegate, OpeningAProjectResetsTheFilter)
{
    LaunchedApp app;
    app.window()->show();
    app.createAndShowProject("site", "http://127.0.0.1:9");
    app.app()->doFilterCanonical();
    ASSERT_EQ(filterShownByTheDialog(app), 5);
    app.app()->openProject();
    EXPECT_EQ(app.app()->currentFilter(), 0);
    OpenProjectWindowController* sheet = app.controller()->openProjectWindowController();
    ASSERT_TRUE(sheet);
    sheet->tableViewShouldSelectRow(0);
    sheet->buttonLocValider()->click();
    EXPECT_EQ(filterShownByTheDialog(app), 0);
}

TEST(AppDelegate, ClosingAProjectResetsTheFilter)
{
    LaunchedApp app;
    app.window()->show();
    app.createAndShowProject("site", "http://127.0.0.1:9");
    app.app()->doFilterNoIndex();
    app.window()->menuItemLocClose->trigger();
    EXPECT_EQ(app.app()->currentFilter(), 0);
    EXPECT_EQ(filterShownByTheDialog(app), 0);
    EXPECT_EQ(app.terminations, 0);
}

TEST(AppDelegate, CreateValidateCreatesShowsAndSavesTheProject)
{
    LaunchedApp app;
    app.app()->createProjectValidateWithController(nullptr, "nouveau", "http://127.0.0.1:9/site", 3, 50);
    ProjectPtr project = Project::getProjectWithName("nouveau");
    ASSERT_TRUE(project);
    EXPECT_EQ(project->url(), "http://127.0.0.1:9/site");
    EXPECT_EQ(project->limit_depth(), 3);
    EXPECT_EQ(project->limit_page_count(), 50);
    EXPECT_EQ(app.documentsView()->currentProject(), project);
    EXPECT_EQ(app.documentsView()->title(), QString::fromUtf8("0 document référencé"));
    EXPECT_FALSE(app.app()->managedObjectContext()->hasChanges());
    EXPECT_EQ(savedProjectRows(app), 1);
}

TEST(AppDelegate, OpenValidateShowsTheProject)
{
    LaunchedApp app;
    ProjectPtr first = app.createAndShowProject("premier", "http://127.0.0.1:9/a");
    ProjectPtr second = app.createAndShowProject("second", "http://127.0.0.1:9/b");
    ASSERT_EQ(app.documentsView()->currentProject(), second);
    app.app()->openProjectValidateWithController(nullptr, first);
    EXPECT_EQ(app.documentsView()->currentProject(), first);
    EXPECT_FALSE(app.app()->managedObjectContext()->hasChanges());
}

TEST(AppDelegate, FilterActionsSetTheFilterAndTheListTitle)
{
    LaunchedApp app;
    app.createAndShowProject("site", "http://127.0.0.1:9");
    struct Step { void (AppDelegate::*action)(); qint32 code; const char* title; };
    const Step steps[] = {
        {&AppDelegate::doFilter404All, 1, "0 document en 404 tous types référencé"},
        {&AppDelegate::doFilter404OnlyHTML, 2, "0 document en 404 de type HTML référencé"},
        {&AppDelegate::doFilter404NotHTML, 3, "0 document en 404 non HTML référencé"},
        {&AppDelegate::doFilterNoIndex, 4, "0 document en noindex référencé"},
        {&AppDelegate::doFilterCanonical, 5, "0 document canonisé référencé"},
        {&AppDelegate::doFilterNone, 0, "0 document référencé"},
    };
    for (const Step& step : steps) {
        (app.app()->*step.action)();
        EXPECT_EQ(app.app()->currentFilter(), step.code);
        EXPECT_EQ(app.documentsView()->title(), QString::fromUtf8(step.title));
        EXPECT_EQ(filterShownByTheDialog(app), step.code);
    }
}

TEST(AppDelegate, FiltersCountTheCrawledPages)
{
    LocalHttpServer server;
    server.setPage("/", "<html><head><title>Home</title></head><body>"
                        "<a href='/missing.html'>missing</a> <a href='/hidden.html'>hidden</a>"
                        "<a href='/copy.html'>copy</a> <a href='/ok.html'>ok</a> <a href='/gone.pdf'>pdf</a></body></html>");
    server.setPage("/gone.pdf", "%PDF-1.4", "application/pdf", 404);
    server.setPage("/hidden.html", "<html><head><title>Hidden</title><meta name='robots' content='noindex'></head>"
                                   "<body></body></html>");
    server.setPage("/copy.html", "<html><head><title>Copy</title><link rel='canonical' href='/ok.html'></head>"
                                 "<body></body></html>");
    server.setPage("/ok.html", "<html><head><title>OK</title></head><body><a href='/'>home</a></body></html>");
    ASSERT_TRUE(server.start());
    LaunchedApp app;
    app.createAndShowProject("site", q(server.baseUrl()));
    ASSERT_TRUE(app.crawlThroughStartButton());

    const std::pair<void (AppDelegate::*)(), const char*> steps[] = {
        {&AppDelegate::doFilter404All, "2 documents en 404 tous types référencés"},
        {&AppDelegate::doFilter404OnlyHTML, "1 document en 404 de type HTML référencé"},
        {&AppDelegate::doFilter404NotHTML, "1 document en 404 non HTML référencé"},
        {&AppDelegate::doFilterNoIndex, "1 document en noindex référencé"},
        {&AppDelegate::doFilterCanonical, "1 document canonisé référencé"},
    };
    for (const auto& [action, title] : steps) {
        (app.app()->*action)();
        const QString expected = QString::fromUtf8(title);
        EXPECT_EQ(app.documentsView()->title(), expected);
        EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), expected.section(' ', 0, 0).toInt()) << title;
    }
    app.app()->doFilterNone();
    // The full list leaves out the noindex and canonical pages and the non-HTML answer.
    EXPECT_EQ(app.documentsView()->numberOfRowsInTableView(), 3);
    EXPECT_EQ(app.documentsView()->title(), QString::fromUtf8("3 documents référencés"));
}
