#include "store/DataModelManager.h"
#include "store/ManagedObjectContext.h"
#include "store/Project.h"
#include "support/DatabaseDamage.h"
#include "support/TestApp.h"
#include "support/TraceCapture.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

ProjectPtr makeProject(const QString& name, const QString& url = QStringLiteral("http://example.com"),
                       int depth = -1, int pages = -1)
{
    return Project::createProjectWithName(name, url, depth, pages);
}

TEST(Registry, CreateSetsEveryAttribute)
{
    TestApp app;
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    ProjectPtr p = makeProject(QStringLiteral("site"), QStringLiteral("http://example.com/a"), 4, 50);
    ASSERT_TRUE(p);
    EXPECT_EQ(p->name(), "site");
    EXPECT_EQ(p->url(), "http://example.com/a");
    EXPECT_GE(p->creation_date(), before);
    EXPECT_FALSE(p->crawler_start_date().isValid());
    EXPECT_FALSE(p->crawler_stop_date().isValid());
    EXPECT_EQ(p->limit_depth(), 4);
    EXPECT_EQ(p->limit_page_count(), 50);
    EXPECT_EQ(p->sqlite_name(), "site.sqlite");
    EXPECT_TRUE(p->explore_no_index());
    EXPECT_FALSE(p->explore_no_follow());
    EXPECT_FALSE(p->explore_ariane());
    EXPECT_FALSE(p->explore_sitewides());
    EXPECT_EQ(p->max_depth(), 0);
    EXPECT_EQ(p->pages_count(), 0);
    // Creating opens, and so creates, the crawl database.
    EXPECT_TRUE(p->database());
    EXPECT_TRUE(QFileInfo::exists(app.path() + "/site.sqlite"));
    EXPECT_EQ(p->full_sqlite_name(), app.path() + "/site.sqlite");
}

TEST(Registry, NoLimitIsNeverReached)
{
    TestApp app;
    ProjectPtr p = makeProject(QStringLiteral("p"));
    for (int v : {0, 1, 1000, 2147483647}) {
        p->setMax_depth(v);
        p->setPages_count(v);
        EXPECT_FALSE(p->isLimitDepthExpected()) << v;
        EXPECT_FALSE(p->isLimitPageCountExpected()) << v;
    }
}

TEST(Registry, LimitsAreExceededOnlyWhenStrictlyGreater)
{
    TestApp app;
    ProjectPtr p = makeProject(QStringLiteral("p"), QStringLiteral("http://example.com"), 3, 3);
    p->setMax_depth(3);
    p->setPages_count(3);
    EXPECT_FALSE(p->isLimitDepthExpected());
    EXPECT_FALSE(p->isLimitPageCountExpected());
    p->setMax_depth(4);
    p->setPages_count(4);
    EXPECT_TRUE(p->isLimitDepthExpected());
    EXPECT_TRUE(p->isLimitPageCountExpected());
}

TEST(Registry, AllProjectsComeOldestFirst)
{
    TestApp app;
    const QDateTime now = QDateTime::currentDateTime();
    makeProject(QStringLiteral("middle"))->setCreation_date(now.addSecs(-60));
    makeProject(QStringLiteral("newest"))->setCreation_date(now);
    makeProject(QStringLiteral("oldest"))->setCreation_date(now.addSecs(-3600));
    ASSERT_TRUE(app.delegate->saveContext());
    auto names = [] {
        QStringList n;
        for (const auto& p : Project::getAllProjects())
            n << p->name();
        return n;
    };
    EXPECT_EQ(names(), (QStringList{"oldest", "middle", "newest"}));

    // The order holds for a fresh context read back from the store too.
    app.delegate.reset();
    app.delegate = std::make_unique<CoreAppDelegate>(&app.presenter);
    EXPECT_EQ(names(), (QStringList{"oldest", "middle", "newest"}));
}

TEST(Registry, LookupsByNameAndURL)
{
    TestApp app;
    ProjectPtr a = makeProject(QStringLiteral("a"), QStringLiteral("http://a.example"));
    ProjectPtr b = makeProject(QStringLiteral("b"), QStringLiteral("http://b.example"));
    EXPECT_EQ(Project::getProjectWithName(QStringLiteral("b")), b);
    EXPECT_EQ(Project::getProjectWithURL(QStringLiteral("http://a.example")), a);
    EXPECT_FALSE(Project::getProjectWithName(QStringLiteral("c")));
    EXPECT_FALSE(Project::getProjectWithURL(QStringLiteral("http://c.example")));
    EXPECT_EQ(Project::countProjects(), 2);
}

TEST(Registry, SameNameTwiceFindsOneAndDeletesOnlyThatOne)
{
    TestApp app;
    ProjectPtr first = makeProject(QStringLiteral("twin"), QStringLiteral("http://one.example"));
    ASSERT_TRUE(app.delegate->saveContext());
    ProjectPtr second = makeProject(QStringLiteral("twin"), QStringLiteral("http://two.example"));
    ASSERT_TRUE(app.delegate->saveContext());
    EXPECT_EQ(Project::countProjects(), 2);
    EXPECT_EQ(Project::getProjectWithName(QStringLiteral("twin")), first);

    Project::deleteProjectWithName(QStringLiteral("twin"));
    EXPECT_EQ(Project::countProjects(), 1);
    EXPECT_EQ(Project::getProjectWithName(QStringLiteral("twin")), second);
}

TEST(Registry, ChangesStayUnsavedUntilSaveContext)
{
    TestApp app;
    ProjectPtr p = makeProject(QStringLiteral("draft"));
    ManagedObjectContext* context = app.delegate->managedObjectContext();
    EXPECT_TRUE(context->hasChanges());
    EXPECT_EQ(Project::countProjects(), 1);  // the context sees its own insert

    // Another application on the same directory sees nothing yet.
    app.delegate.reset();
    app.delegate = std::make_unique<CoreAppDelegate>(&app.presenter);
    EXPECT_EQ(Project::countProjects(), 0);

    p = makeProject(QStringLiteral("kept"), QStringLiteral("http://kept.example"), 2, 10);
    p->setPages_count(7);
    ASSERT_TRUE(app.delegate->saveContext());
    EXPECT_FALSE(app.delegate->managedObjectContext()->hasChanges());
    p->setMax_depth(5);
    EXPECT_TRUE(app.delegate->managedObjectContext()->hasChanges());

    app.delegate.reset();
    app.delegate = std::make_unique<CoreAppDelegate>(&app.presenter);
    ProjectPtr back = Project::getProjectWithName(QStringLiteral("kept"));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->url(), "http://kept.example");
    EXPECT_EQ(back->limit_depth(), 2);
    EXPECT_EQ(back->limit_page_count(), 10);
    EXPECT_EQ(back->pages_count(), 7);
    EXPECT_EQ(back->max_depth(), 0);  // the change after the save was never saved
    EXPECT_FALSE(back->crawler_start_date().isValid());
    EXPECT_TRUE(back->explore_no_index());
    EXPECT_FALSE(back->valueForKey("explore_no_follow").isValid());  // unset, not NO
    EXPECT_EQ(back->creation_date().toMSecsSinceEpoch() / 1000, p->creation_date().toMSecsSinceEpoch() / 1000);
}

TEST(Registry, RollbackRestoresTheSavedValues)
{
    TestApp app;
    ProjectPtr p = makeProject(QStringLiteral("p"));
    ASSERT_TRUE(app.delegate->saveContext());
    p->setPages_count(12);
    ProjectPtr unsaved = makeProject(QStringLiteral("q"));
    ManagedObjectContext* context = app.delegate->managedObjectContext();
    context->rollback();
    EXPECT_EQ(p->pages_count(), 0);
    EXPECT_FALSE(Project::getProjectWithName(QStringLiteral("q")));
    EXPECT_FALSE(context->hasChanges());
}

TEST(Registry, DeletingAMissingProjectStillSaves)
{
    TestApp app;
    makeProject(QStringLiteral("pending"));
    Project::deleteProjectWithName(QStringLiteral("nobody"));
    EXPECT_FALSE(app.delegate->managedObjectContext()->hasChanges());
    app.delegate.reset();
    app.delegate = std::make_unique<CoreAppDelegate>(&app.presenter);
    EXPECT_TRUE(Project::getProjectWithName(QStringLiteral("pending")));
}

TEST(Registry, DeleteRemovesEveryFileOfTheProject)
{
    TestApp app;
    ProjectPtr p = makeProject(QStringLiteral("gone"));
    ProjectPtr other = makeProject(QStringLiteral("stays"));
    DataModelManager* m = app.manager();
    QFile log(m->fullLogFileNameWithProjectName("gone"));
    ASSERT_TRUE(log.open(QIODevice::WriteOnly));
    log.close();
    p->appendToErrorFileLogHandle(QStringLiteral("boom\n"));
    p->flushLogs();
    const QString saved = m->fullHtmlLocalFileNameWithProjectName("gone", "content_html_1.html");
    QFile savedFile(saved);
    ASSERT_TRUE(savedFile.open(QIODevice::WriteOnly));
    savedFile.close();
    ASSERT_TRUE(app.delegate->saveContext());

    const QString errors = m->fullLogErrorsFileNameWithProjectName("gone");
    ASSERT_TRUE(QFileInfo::exists(errors));
    ASSERT_TRUE(QFileInfo::exists(app.path() + "/gone.sqlite"));

    Project::deleteProjectWithName(QStringLiteral("gone"));
    EXPECT_FALSE(QFileInfo::exists(log.fileName()));
    EXPECT_FALSE(QFileInfo::exists(errors));
    EXPECT_FALSE(QFileInfo::exists(m->defaultLogFolder() + "/gone"));
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/gone.sqlite"));
    EXPECT_TRUE(QFileInfo::exists(app.path() + "/stays.sqlite"));
    EXPECT_FALSE(Project::getProjectWithName(QStringLiteral("gone")));
    EXPECT_EQ(Project::countProjects(), 1);
}

TEST(Registry, DeleteAllProjectsEmptiesTheRegistry)
{
    TestApp app;
    makeProject(QStringLiteral("a"));
    makeProject(QStringLiteral("b"));
    ASSERT_TRUE(app.delegate->saveContext());
    Project::deleteAllProjects();
    EXPECT_EQ(Project::countProjects(), 0);
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/a.sqlite"));
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/b.sqlite"));
    app.delegate.reset();
    app.delegate = std::make_unique<CoreAppDelegate>(&app.presenter);
    EXPECT_EQ(Project::countProjects(), 0);
}

TEST(Registry, AFileWhereTheFolderShouldBeIsReported)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/not-a-folder";
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("x");
    file.close();
    DataModelManager::setDataDirectoryOverride(path);
    RecordingErrorPresenter presenter;
    {
        CoreAppDelegate delegate(&presenter);
        EXPECT_FALSE(delegate.managedObjectContext());
        ASSERT_EQ(presenter.errors.size(), 2u);
        EXPECT_EQ(presenter.errors[0].domain, "YOUR_ERROR_DOMAIN");
        EXPECT_EQ(presenter.errors[0].code, 101);
        EXPECT_EQ(presenter.errors[0].localizedDescription,
                  QStringLiteral("Expected a folder to store application data, found a file (%1).").arg(path));
        EXPECT_EQ(presenter.errors[1].code, 9999);
        EXPECT_EQ(presenter.errors[1].localizedDescription, "Failed to initialize the store");
        EXPECT_EQ(presenter.errors[1].localizedFailureReason, "There was an error building up the data file.");

        // Every later request fails the same way, and registry operations answer nothing.
        EXPECT_FALSE(delegate.managedObjectContext());
        EXPECT_EQ(presenter.errors.back().localizedDescription, "Failed to initialize the store");
        EXPECT_FALSE(Project::createProjectWithName("p", "http://example.com", -1, -1));
        EXPECT_TRUE(Project::getAllProjects().isEmpty());
        EXPECT_EQ(Project::countProjects(), 0);
        EXPECT_TRUE(delegate.saveContext());
    }
    DataModelManager::setDataDirectoryOverride(QString());
    QFileInfo info(path);
    EXPECT_TRUE(info.isFile());
}

TEST(Registry, AStoreFileThatIsNotADatabaseIsReported)
{
    QTemporaryDir dir;
    QFile store(dir.path() + "/Quillmere.storedata");
    ASSERT_TRUE(store.open(QIODevice::WriteOnly));
    store.write(QByteArray(4096, 'z'));
    store.close();
    DataModelManager::setDataDirectoryOverride(dir.path());
    RecordingErrorPresenter presenter;
    {
        CoreAppDelegate delegate(&presenter);
        EXPECT_FALSE(delegate.managedObjectContext());
        ASSERT_GE(presenter.errors.size(), 2u);
        EXPECT_TRUE(presenter.errors[0].localizedDescription.contains("registry"));
        EXPECT_FALSE(presenter.errors[0].localizedFailureReason.isEmpty());
        EXPECT_EQ(presenter.errors.back().localizedDescription, "Failed to initialize the store");
    }
    DataModelManager::setDataDirectoryOverride(QString());
}

// A registry whose header reads but whose pages are damaged, or that lost its Project table,
// is reported as damaged rather than read as one without projects.
TEST(Registry, AStoreWithDamagedPagesOrWithoutItsTableIsReportedAsDamaged)
{
    for (const bool dropTable : {false, true}) {
        QTemporaryDir dir;
        const QString path = dir.path() + "/Quillmere.storedata";
        DataModelManager::setDataDirectoryOverride(dir.path());
        {
            RecordingErrorPresenter presenter;
            CoreAppDelegate delegate(&presenter);
            ASSERT_TRUE(makeProject(QStringLiteral("one")));
            ASSERT_TRUE(delegate.saveContext());
        }
        if (dropTable) {
            sqlite3* db = nullptr;
            ASSERT_EQ(sqlite3_open(path.toUtf8().constData(), &db), SQLITE_OK);
            ASSERT_EQ(sqlite3_exec(db, "drop table Project", nullptr, nullptr, nullptr), SQLITE_OK);
            sqlite3_close(db);
        } else {
            ASSERT_GT(DatabaseDamage::damageMiddleOf(path, "Project"), 0);
        }
        const QByteArray before = DatabaseDamage::contents(path);
        RecordingErrorPresenter presenter;
        {
            CoreAppDelegate delegate(&presenter);
            EXPECT_FALSE(delegate.managedObjectContext()) << dropTable;
            ASSERT_GE(presenter.errors.size(), 1u) << dropTable;
            EXPECT_EQ(presenter.errors[0].localizedDescription,
                      QStringLiteral("The project registry is damaged (%1).").arg(path));
            EXPECT_FALSE(presenter.errors[0].localizedFailureReason.isEmpty());
            if (dropTable)
                EXPECT_EQ(presenter.errors[0].localizedFailureReason, "its Project table is missing");
            EXPECT_TRUE(Project::getAllProjects().isEmpty());
        }
        EXPECT_TRUE(DatabaseDamage::contents(path) == before) << dropTable;
        DataModelManager::setDataDirectoryOverride(QString());
    }
}

TEST(Registry, AnEmptyStoreFileIsANewStore)
{
    QTemporaryDir dir;
    QFile store(dir.path() + "/Quillmere.storedata");
    ASSERT_TRUE(store.open(QIODevice::WriteOnly));
    store.close();
    DataModelManager::setDataDirectoryOverride(dir.path());
    RecordingErrorPresenter presenter;
    {
        CoreAppDelegate delegate(&presenter);
        EXPECT_TRUE(delegate.managedObjectContext());
        EXPECT_TRUE(presenter.errors.empty());
        EXPECT_TRUE(makeProject(QStringLiteral("p")));
        EXPECT_TRUE(delegate.saveContext());
    }
    DataModelManager::setDataDirectoryOverride(QString());
}

// Deleting a row that names files outside the data directory (a damaged registry) removes
// the row but none of those files.
TEST(Registry, DeleteNeverRemovesFilesOutsideTheDataDirectory)
{
    QTemporaryDir root;
    const QString data = root.path() + "/data";
    DataModelManager::setDataDirectoryOverride(data);
    RecordingErrorPresenter presenter;
    {
        CoreAppDelegate delegate(&presenter);
        DataModelManager* m = delegate.dataModelManager();
        ProjectPtr kept = makeProject(QStringLiteral("kept"));
        ASSERT_TRUE(kept);
        kept->closeSQLiteDatabase();
        ProjectPtr p = makeProject(QStringLiteral("ok"));
        ASSERT_TRUE(p);
        p->closeSQLiteDatabase();
        p->setName(QStringLiteral("../outside"));
        p->setSqlite_name(QStringLiteral("../outside.sqlite"));
        ASSERT_TRUE(delegate.saveContext());
        for (const QString& file : {root.path() + "/outside.sqlite", root.path() + "/outside_errors.log"}) {
            QFile f(file);
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write("not ours");
        }
        Project::deleteProjectWithName(QStringLiteral("../outside"));
        EXPECT_FALSE(Project::getProjectWithName(QStringLiteral("../outside")));
        EXPECT_TRUE(QFileInfo::exists(root.path() + "/outside.sqlite"));
        EXPECT_TRUE(QFileInfo::exists(root.path() + "/outside_errors.log"));

        // A name of ".." would make its saved pages folder the data directory itself.
        ProjectPtr parent = makeProject(QStringLiteral("dots"));
        ASSERT_TRUE(parent);
        parent->closeSQLiteDatabase();
        parent->setName(QStringLiteral(".."));
        ASSERT_TRUE(delegate.saveContext());
        Project::deleteProjectWithName(QStringLiteral(".."));
        EXPECT_TRUE(QFileInfo::exists(data + "/Quillmere.storedata"));
        EXPECT_TRUE(QFileInfo::exists(data + "/kept.sqlite"));
        EXPECT_TRUE(QFileInfo(m->defaultLogFolder()).isDir());
    }
    DataModelManager::setDataDirectoryOverride(QString());
}

TEST(Registry, AMissingDataDirectoryIsCreated)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/deep/er/data";
    DataModelManager::setDataDirectoryOverride(path);
    RecordingErrorPresenter presenter;
    {
        CoreAppDelegate delegate(&presenter);
        EXPECT_TRUE(delegate.managedObjectContext());
        EXPECT_TRUE(presenter.errors.empty());
        EXPECT_TRUE(QFileInfo::exists(path + "/Quillmere.storedata"));
        EXPECT_TRUE(QFileInfo(path + "/Logs").isDir());
    }
    DataModelManager::setDataDirectoryOverride(QString());
}

TEST(Registry, ANameWithASeparatorMakesPathsInASubFolder)
{
    TestApp app;
    DataModelManager* m = app.manager();
    EXPECT_EQ(m->fullSQLite3FileNameWithProjectName("sub/site.sqlite"), app.path() + "/sub/site.sqlite");
    EXPECT_EQ(m->fullLogFileNameWithProjectName("sub/site"), m->defaultLogFolder() + "/sub/site.log");
    EXPECT_EQ(m->fullLogErrorsFileNameWithProjectName("sub/site"), app.path() + "/sub/site_errors.log");
    // The registry itself does not refuse such a name.
    ProjectPtr p = makeProject(QStringLiteral("sub/site"));
    ASSERT_TRUE(p);
    EXPECT_EQ(p->full_sqlite_name(), app.path() + "/sub/site.sqlite");
}

TEST(Registry, DescriptionShowsTheStartDateOnlyWhenSet)
{
    TestApp app;
    ProjectPtr p = makeProject(QStringLiteral("d"), QStringLiteral("http://d.example"), 3, -1);
    const QDateTime created(QDate(2026, 1, 2), QTime(3, 4, 5));
    p->setCreation_date(created);
    EXPECT_EQ(p->description(),
              "name(d) url(http://d.example) creationDate(2026-01-02 03:04:05) limitDepth(3) limitPageCount(-1)");
    p->setCrawler_start_date(QDateTime(QDate(2026, 2, 3), QTime(4, 5, 6)));
    EXPECT_EQ(p->description(), "name(d) url(http://d.example) creationDate(2026-01-02 03:04:05) "
                                "crawlerStartDate(2026-02-03 04:05:06) limitDepth(3) limitPageCount(-1)");
}

TEST(Registry, FullSqliteNameIsTraced)
{
    if (!kDebugTraceEnabled)
        GTEST_SKIP() << "the debug trace is compiled out of release builds";
    TestApp app;
    ProjectPtr p = makeProject(QStringLiteral("t"));
    TraceCapture trace;
    p->full_sqlite_name();
    EXPECT_TRUE(trace.contains("sqlite_name(t.sqlite) full_sqlite_name(" + app.path().toStdString() + "/t.sqlite)"));
}

TEST(Registry, ApplicationFilesDirectoryFollowsTheEnvironment)
{
    DataModelManager::setDataDirectoryOverride(QString());
    RecordingErrorPresenter presenter;
    QTemporaryDir dir;
    const QByteArray oldData = qgetenv("QUILLMERE_DATA_DIR");
    const QByteArray oldXdg = qgetenv("XDG_DATA_HOME");
    qunsetenv("QUILLMERE_DATA_DIR");
    qputenv("XDG_DATA_HOME", dir.path().toUtf8());
    {
        CoreAppDelegate delegate(&presenter);
        EXPECT_EQ(delegate.dataModelManager()->applicationFilesDirectory(),
                  dir.path() + "/" + DataModelManager::applicationIdentifier());
        qputenv("QUILLMERE_DATA_DIR", (dir.path() + "/env").toUtf8());
        EXPECT_EQ(delegate.dataModelManager()->applicationFilesDirectory(), dir.path() + "/env");
        DataModelManager::setDataDirectoryOverride(dir.path() + "/option");
        EXPECT_EQ(delegate.dataModelManager()->applicationFilesDirectory(), dir.path() + "/option");
        DataModelManager::setDataDirectoryOverride(QString());
    }
    if (oldData.isNull())
        qunsetenv("QUILLMERE_DATA_DIR");
    else
        qputenv("QUILLMERE_DATA_DIR", oldData);
    if (oldXdg.isNull())
        qunsetenv("XDG_DATA_HOME");
    else
        qputenv("XDG_DATA_HOME", oldXdg);
}

} // namespace
