// Creating, deleting and crawling projects from the window by the same rules as the command
// line: the delete takes the project's lock, registry rows whose files leave the data directory
// are neither opened nor crawled, the new-project sheet refuses names in use or with control
// characters and stores URLs in the form the crawl uses, and a deleted project leaves the window.
#include "AppTestSupport.h"

#include "cli/SlowTestSite.h"
#include "support/CliProcess.h"
#include "support/LocalHttpServer.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QMenu>
#include <QTest>
#include <QThread>

#include <sqlite3.h>

using namespace apptest;

namespace {

// The first sheet of the application's own (its delegate is the application), on screen.
OpenProjectWindowController* openSheet(LaunchedApp& app)
{
    app.window()->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.app()->openProject();
    OpenProjectWindowController* sheet = app.controller()->openProjectWindowController();
    EXPECT_TRUE(sheet && sheet->isVisible());
    return sheet;
}

int rowOf(const OpenProjectWindowController* sheet, const QString& name)
{
    for (int row = 0; row < sheet->numberOfRowsInTableView(); ++row)
        if (sheet->cellText(OpenProjectWindowController::IdtProjectName, row) == name)
            return row;
    return -1;
}

void deleteThroughTheContextMenu(OpenProjectWindowController* sheet, const QString& name)
{
    const int row = rowOf(sheet, name);
    ASSERT_GE(row, 0) << name.toStdString();
    sheet->menuNeedsUpdate(row)->actions()[0]->trigger();
}

QString journalMode(const QString& path)
{
    sqlite3* db = nullptr;
    QString mode;
    if (sqlite3_open_v2(path.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA journal_mode", -1, &s, nullptr) == SQLITE_OK && sqlite3_step(s) == SQLITE_ROW)
            mode = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, 0)));
        sqlite3_finalize(s);
    }
    sqlite3_close(db);
    return mode;
}

int registryRows(const QString& storePath, const QString& name)
{
    sqlite3* db = nullptr;
    int count = -1;
    if (sqlite3_open_v2(storePath.toUtf8().constData(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(db, "select count(*) from Project where name=?", -1, &s, nullptr) == SQLITE_OK) {
            const QByteArray utf8 = name.toUtf8();
            sqlite3_bind_text(s, 1, utf8.constData(), -1, SQLITE_TRANSIENT);
            if (sqlite3_step(s) == SQLITE_ROW)
                count = sqlite3_column_int(s, 0);
        }
        sqlite3_finalize(s);
    }
    sqlite3_close(db);
    return count;
}

} // namespace

TEST(ProjectLifecycle, DeletingAProjectACommandLineCrawlIsCrawlingIsRefusedWithTheProcess)
{
    LaunchedApp app;
    LocalHttpServer server;
    SlowTestSite::serve(server, 80);
    ASSERT_TRUE(server.start());
    app.createAndShowProject("site", QString::fromStdString(server.baseUrl()))->closeSQLiteDatabase();
    app.controller()->closeCurrentProject();
    const QString database = app.dir.path() + "/site.sqlite";

    CliProcess crawl({"crawl", "site"}, app.dir.path());
    ASSERT_TRUE(crawl.started());
    for (int i = 0; i < 2000 && server.requestCount() < 3; ++i)
        QThread::msleep(5);
    ASSERT_GE(server.requestCount(), 3u);

    OpenProjectWindowController* sheet = openSheet(app);
    ASSERT_TRUE(sheet);
    Alert::queueAnswer(Alert::FirstButtonReturn);
    deleteThroughTheContextMenu(sheet, "site");
    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    const Alert::Shown alert = Alert::shownAlerts().first();
    EXPECT_EQ(alert.messageText, QStringLiteral("Le projet « site » est déjà utilisé par un autre programme."));
    EXPECT_EQ(alert.informativeText, QStringLiteral("Le processus %1 (quillmere crawl) l'analyse ou le modifie : "
                                                    "attendez qu'il ait fini.").arg(crawl.pid()));
    EXPECT_EQ(alert.buttons, QStringList{"OK"});
    EXPECT_TRUE(Project::getProjectWithName("site"));
    EXPECT_GE(rowOf(sheet, "site"), 0);
    EXPECT_TRUE(QFileInfo::exists(database));

    // The crawl goes to its end, into its own files.
    ASSERT_TRUE(crawl.wait(120000));
    EXPECT_EQ(crawl.exitCode(), 0) << crawl.err().toStdString();
    EXPECT_TRUE(QFileInfo::exists(database));
    EXPECT_EQ(registryRows(app.dir.path() + "/Quillmere.storedata", "site"), 1);

    // Once it has finished, the same delete goes through, without a question.
    Alert::clearForTesting();
    deleteThroughTheContextMenu(sheet, "site");
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
    EXPECT_FALSE(Project::getProjectWithName("site"));
    EXPECT_FALSE(QFileInfo::exists(database));
    EXPECT_EQ(rowOf(sheet, "site"), -1);
}

TEST(ProjectLifecycle, ARowWhoseFilesLeaveTheDataDirectoryIsNeitherOpenedNorCrawled)
{
    LaunchedApp app;
    app.createAndShowProject("kept", "http://127.0.0.1:9");
    // Another program's SQLite file beside the data directory, and a row that names it.
    const QString stem = QFileInfo(app.dir.path()).fileName();
    const QString foreign = QFileInfo(app.dir.path() + "/../" + stem + "-other.sqlite").absoluteFilePath();
    const QString absent = QFileInfo(app.dir.path() + "/../" + stem + "-evil.sqlite").absoluteFilePath();
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open(foreign.toUtf8().constData(), &db), SQLITE_OK);
        ASSERT_EQ(sqlite3_exec(db, "create table t(x); insert into t values(1)", nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }
    struct Remove {
        QString a, b;
        ~Remove() { QFile::remove(a), QFile::remove(b); }
    } cleanup{foreign, absent};
    ASSERT_EQ(journalMode(foreign), "delete");
    {
        sqlite3* db = nullptr;
        ASSERT_EQ(sqlite3_open((app.dir.path() + "/Quillmere.storedata").toUtf8().constData(), &db), SQLITE_OK);
        const QByteArray sql = QStringLiteral("insert into Project(name,url,creation_date,limit_depth,limit_page_count,"
                                              "sqlite_name,explore_no_index) values('%1','http://127.0.0.1:9',"
                                              "1700000000000,-1,-1,'%2',1),('%3','http://127.0.0.1:9',"
                                              "1700000000001,-1,-1,'%4',1)")
                                   .arg("other", "../" + stem + "-other.sqlite", "evil", "../" + stem + "-evil.sqlite")
                                   .toUtf8();
        ASSERT_EQ(sqlite3_exec(db, sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(db);
    }

    for (const QString& name : {QStringLiteral("other"), QStringLiteral("evil")}) {
        SCOPED_TRACE(name.toStdString());
        Alert::clearForTesting();
        ProjectPtr project = Project::getProjectWithName(name);
        ASSERT_TRUE(project);
        app.app()->openProjectValidateWithController(nullptr, project);
        EXPECT_FALSE(project->sqlite3Database());
        Alert::queueAnswer(Alert::FirstButtonReturn);
        app.progressView()->buttonLancer()->click();
        EXPECT_FALSE(app.controller()->downloaderOperation());
        ASSERT_EQ(Alert::shownAlerts().size(), 1);
        EXPECT_TRUE(Alert::shownAlerts().first().messageText.contains("endommagé"))
            << Alert::shownAlerts().first().messageText.toStdString();
        EXPECT_TRUE(Alert::shownAlerts().first().messageText.contains("'" + name + "'"));
        app.controller()->closeCurrentProject();
    }
    EXPECT_FALSE(QFileInfo::exists(absent));
    EXPECT_EQ(journalMode(foreign), "delete");
    EXPECT_FALSE(QFileInfo::exists(foreign + "-wal"));
    // Nor is anything outside locked (a lock file would be made there).
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(foreign).absolutePath() + "/" + stem + "-evil.lock"));
    EXPECT_FALSE(QFileInfo::exists(QFileInfo(foreign).absolutePath() + "/" + stem + "-other.lock"));
}

TEST(ProjectLifecycle, TheNewProjectSheetRefusesANameInUseOrWithControlCharacters)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    const auto create = [&](const QString& name, const QString& url) {
        app.app()->createProject();
        NewProjectWindowController* sheet = app.controller()->projectWindowController();
        EXPECT_TRUE(sheet);
        sheet->textFieldName()->setText(name);
        sheet->textFieldURL()->setText(url);
        Alert::queueAnswer(Alert::FirstButtonReturn);
        sheet->buttonLocValider()->click();
    };
    create("site", "http://127.0.0.1:9/first");
    ASSERT_EQ(Alert::queuedAnswerCount(), 1);  // no alert for the first one
    Alert::clearForTesting();
    ProjectPtr first = Project::getProjectWithName("site");
    ASSERT_TRUE(first);
    ASSERT_EQ(app.documentsView()->currentProject(), first);

    create("site", "http://127.0.0.1:9/second");
    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_EQ(Alert::shownAlerts().first().messageText, QStringLiteral("un projet nommé 'site' existe déjà"));
    EXPECT_EQ(registryRows(app.dir.path() + "/Quillmere.storedata", "site"), 1);
    EXPECT_EQ(Project::getProjectWithName("site")->url(), "http://127.0.0.1:9/first");
    EXPECT_EQ(app.documentsView()->currentProject(), first);

    Alert::clearForTesting();
    create("tab\there", "http://127.0.0.1:9/");
    ASSERT_EQ(Alert::shownAlerts().size(), 1);
    EXPECT_TRUE(Alert::shownAlerts().first().messageText.contains("caractères de contrôle"))
        << Alert::shownAlerts().first().messageText.toStdString();
    EXPECT_FALSE(Project::getProjectWithName("tab\there"));
    EXPECT_FALSE(QFileInfo::exists(app.dir.path() + "/tab\there.sqlite"));
}

TEST(ProjectLifecycle, TheNewProjectSheetStoresTheURLInTheFormTheCrawlUses)
{
    LaunchedApp app;
    app.window()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(app.window()));
    app.app()->createProject();
    NewProjectWindowController* sheet = app.controller()->projectWindowController();
    ASSERT_TRUE(sheet);
    sheet->textFieldName()->setText("site");
    sheet->textFieldURL()->setText("HTTP://Bücher.Example/Livres/#haut");
    sheet->buttonLocValider()->click();
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
    ProjectPtr project = Project::getProjectWithName("site");
    ASSERT_TRUE(project);
    EXPECT_EQ(project->url(), "http://xn--bcher-kva.example/Livres/");
}

TEST(ProjectLifecycle, DeletingTheOpenProjectClosesItInTheWindow)
{
    LaunchedApp app;
    app.createAndShowProject("alpha", "http://127.0.0.1:9");
    ProjectPtr shown = app.createAndShowProject("beta", "http://127.0.0.1:9/b");
    ASSERT_EQ(app.documentsView()->currentProject(), shown);
    ASSERT_TRUE(app.progressView()->buttonLancer()->isEnabled());
    const QString database = app.dir.path() + "/beta.sqlite";
    ASSERT_TRUE(QFileInfo::exists(database));

    OpenProjectWindowController* sheet = openSheet(app);
    ASSERT_TRUE(sheet);
    deleteThroughTheContextMenu(sheet, "beta");
    EXPECT_TRUE(Alert::shownAlerts().isEmpty());
    EXPECT_FALSE(Project::getProjectWithName("beta"));
    EXPECT_FALSE(QFileInfo::exists(database));

    // Nothing of it stays on screen, and nothing can crawl it back into being.
    EXPECT_FALSE(app.documentsView()->currentProject());
    EXPECT_FALSE(app.linksView()->currentProject());
    EXPECT_FALSE(app.controller()->currentProject());
    EXPECT_TRUE(app.progressView()->textFieldProjectName()->text().isEmpty());
    EXPECT_FALSE(app.progressView()->buttonLancer()->isEnabled());
    app.progressView()->buttonLancer()->click();
    EXPECT_FALSE(app.controller()->downloaderOperation());
    EXPECT_FALSE(QFileInfo::exists(database));

    // Deleting another project leaves the one shown alone.
    app.controller()->populateCurrentProject(Project::getProjectWithName("alpha"));
    Project::createProjectWithName("gamma", "http://127.0.0.1:9/g", -1, -1);
    ASSERT_TRUE(app.app()->saveContext());
    sheet = openSheet(app);
    ASSERT_TRUE(sheet);
    deleteThroughTheContextMenu(sheet, "gamma");
    ASSERT_TRUE(app.documentsView()->currentProject());
    EXPECT_EQ(app.documentsView()->currentProject()->name(), "alpha");
    EXPECT_TRUE(app.progressView()->buttonLancer()->isEnabled());
}
