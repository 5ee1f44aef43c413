#include "store/ProjectCatalog.h"

#include "store/LinkRules.h"

#include "store/DataModelManager.h"
#include "base/DebugTrace.h"
#include "store/ManagedObjectContext.h"
#include "store/ManagedObjectModel.h"
#include "store/PersistentStoreCoordinator.h"
#include "store/Project.h"
#include "store/ProjectFilePaths.h"
#include "store/ProjectRules.h"
#include "store/RegistryLock.h"
#include "store/StringTable.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {
// What SQLite may leave beside a database: its write-ahead log, shared memory and journal.
const char* const kDatabaseCompanions[] = {"-wal", "-shm", "-journal"};
} // namespace

ProjectCatalog::ProjectCatalog(DataModelManager& manager, const StringTable& text) : manager_(manager), text_(text) {}

QString ProjectCatalog::escapingPath(const Project& project) const
{
    return ProjectFilePaths::escapingPath(manager_, project);
}

QString ProjectCatalog::escapingPath(const QString& name, const QString& sqliteName) const
{
    return ProjectFilePaths::escapingPath(manager_, name, sqliteName);
}

QString ProjectCatalog::filesOutsideText(const QString& name, const QString& escaping) const
{
    return text_.text("CliErrorFilesOutsideDataDir")
        .arg(manager_.storeFilePath(), name, manager_.applicationFilesDirectory(), escaping);
}

ProjectCatalog::Result ProjectCatalog::registryRefusal(const RegistryLock& registry) const
{
    return refused(Outcome::Refused, registry.errorString().isEmpty()
                                         ? text_.text("ProjectErrorRegistryBusy").arg(manager_.storeFilePath())
                                         : text_.text("ProjectErrorCannotLockRegistry")
                                               .arg(registry.path(), registry.errorString()));
}

ProjectCatalog::Result ProjectCatalog::refused(Outcome outcome, const QString& why) const
{
    Result result;
    result.outcome = outcome;
    result.why = why;
    return result;
}

ProjectCatalog::Result ProjectCatalog::lock(const Project& project, const QString& purpose) const
{
    if (const QString escaping = escapingPath(project); !escaping.isNull())
        return refused(Outcome::Refused, filesOutsideText(project.name(), escaping));
    Result result;
    result.lock = std::make_unique<ProjectLock>(ProjectLock::lockFilePathForDatabase(project.full_sqlite_name()));
    const ProjectLock::Result taken = result.lock->tryLock(purpose);
    if (taken != ProjectLock::Result::Locked) {
        result.outcome = Outcome::InUse;
        result.lockRefusal.emplace(*result.lock, taken, project.name());
        result.why = result.lockRefusal->line(text_);
        result.lock.reset();
        return result;
    }
    // Checked under the lock: a delete elsewhere takes the same lock before it removes files.
    if (!isStillRegistered(project)) {
        result.lock.reset();
        return refused(Outcome::Gone, text_.text("ProjectErrorDeletedElsewhere").arg(project.name()));
    }
    return result;
}

bool ProjectCatalog::isStillRegistered(const Project& project) const
{
    // Not saved yet: its row is still to come.
    if (project.isInserted() || project.objectID() == 0)
        return true;
    PersistentStoreCoordinator* coordinator = manager_.persistentStoreCoordinator();
    const ManagedObjectModel* model = coordinator ? coordinator->managedObjectModel() : nullptr;
    const EntityDescription* entity = model ? model->entityNamed(QStringLiteral("Project")) : nullptr;
    if (!entity)
        return true;  // no store to ask: the registry's own error is shown elsewhere
    AppError error;
    const auto rows = coordinator->fetchRows(*entity, &error);
    if (!rows)
        return true;  // an unreadable registry is not a deleted row
    return std::any_of(rows->begin(), rows->end(), [&](const StoreRow& row) { return row.primaryKey == project.objectID(); });
}

QStringList ProjectCatalog::projectFiles(const QString& name, const QString& sqliteName) const
{
    const QString database = manager_.fullSQLite3FileNameWithProjectName(sqliteName);
    QStringList files{database};
    for (const char* companion : kDatabaseCompanions)
        files << database + QLatin1String(companion);
    files << manager_.fullLogErrorsFileNameWithProjectName(name) << manager_.fullLogFileNameWithProjectName(name)
          << manager_.defaultLogFolder() + QLatin1Char('/') + name;
    return files;
}

void ProjectCatalog::removeDatabaseFiles(const QString& databasePath) const
{
    manager_.deleteSQLite3DatabaseWithName(databasePath);
    for (const char* companion : kDatabaseCompanions)
        QFile::remove(databasePath + QLatin1String(companion));
}

ProjectCatalog::Result ProjectCatalog::create(const QString& name, const QString& typedURL, qint32 limitDepth,
                                              qint32 limitPageCount, const QString& purpose, const Verify& verify,
                                              LinkRules rules)
{
    QString why;
    if (!ProjectRules::isUsableName(name, text_, &why))
        return refused(Outcome::Refused, why);
    const QString normal = ProjectRules::normalForm(typedURL);
    const QString url = normal.isNull() ? typedURL : normal;
    if (!ProjectRules::isCrawlableURL(url, text_, &why))
        return refused(Outcome::Refused, why);
    ManagedObjectContext* context = manager_.managedObjectContext();
    if (!context)
        return refused(Outcome::StoreUnavailable, QString());

    // From the look-up to the save, no other process changes the registry.
    RegistryLock registry(manager_.storeFilePath());
    if (!registry.lock())
        return registryRefusal(registry);
    const QString sqliteName = name + QStringLiteral(".sqlite");
    for (const auto& existing : Project::getAllProjects()) {
        if (existing->name() == name || existing->sqlite_name() == sqliteName)
            return refused(Outcome::Exists, text_.text("CliErrorProjectExists").arg(name));
    }
    if (const QString escaping = escapingPath(name, sqliteName); !escaping.isNull())
        return refused(Outcome::Refused, filesOutsideText(name, escaping));

    const QString database = manager_.fullSQLite3FileNameWithProjectName(sqliteName);
    auto lock = std::make_unique<ProjectLock>(ProjectLock::lockFilePathForDatabase(database));
    if (const ProjectLock::Result taken = lock->tryLock(purpose); taken != ProjectLock::Result::Locked) {
        Result result = refused(Outcome::InUse, QString());
        result.lockRefusal.emplace(*lock, taken, name);
        result.why = result.lockRefusal->line(text_);
        return result;
    }
    // A file no row names belongs to a project deleted or a crawl killed before its project
    // was saved: taking it over would mix two crawls in one database.
    for (const QString& file : projectFiles(name, sqliteName)) {
        if (QFileInfo::exists(file))
            return refused(Outcome::Refused, text_.text("ProjectErrorFileOfNoProject").arg(file));
    }

    ProjectPtr project = Project::createProjectWithName(name, url, limitDepth, limitPageCount);
    if (!project)
        return refused(Outcome::StoreUnavailable, QString());
    const auto undo = [&] {
        project->closeSQLiteDatabase();
        context->rollback();
        removeDatabaseFiles(database);
    };
    if (!project->sqlite3Database()) {
        undo();
        return refused(Outcome::Refused,
                       text_.text("CliErrorCannotCreateDatabase").arg(name, manager_.applicationFilesDirectory()));
    }
    if (rules == LinkRules::Web && !LinkRulesStore::makeWeb(project->sqlite3Database())) {
        undo();
        return refused(Outcome::Refused,
                       text_.text("CliErrorCannotCreateDatabase").arg(name, manager_.applicationFilesDirectory()));
    }
    if (verify && !verify(*project, &why)) {
        undo();
        return refused(Outcome::Refused, why);
    }
    if (!manager_.saveContext()) {
        project->closeSQLiteDatabase();
        removeDatabaseFiles(database);
        return refused(Outcome::NotSaved,
                       text_.text("CliErrorCannotSaveRegistry").arg(manager_.applicationFilesDirectory()));
    }
    Result result;
    result.project = project;
    result.lock = std::move(lock);
    return result;
}

ProjectCatalog::Result ProjectCatalog::remove(const std::shared_ptr<Project>& project, const QString& purpose)
{
    Result result = lock(*project, purpose);
    if (!result.done())
        return result;
    ManagedObjectContext* context = manager_.managedObjectContext();
    if (!context)
        return refused(Outcome::StoreUnavailable, QString());
    RegistryLock registry(manager_.storeFilePath());
    if (!registry.lock())
        return registryRefusal(registry);
    const QString name = project->name();
    const QString database = project->full_sqlite_name();
    project->closeSQLiteDatabase();
    context->deleteObject(project);
    if (!manager_.saveContext())
        return refused(Outcome::NotSaved,
                       text_.text("CliErrorCannotSaveRegistry").arg(manager_.applicationFilesDirectory()));
    DebugTrace("ProjectCatalog: %s deleted from the registry, its files go now", qPrintable(name));
    manager_.deleteLogFileNameWithProjectName(name);
    manager_.deleteLogErrorsFileNameWithProjectName(name);
    manager_.deleteHtmlLocalFilesWithProjectName(name);
    removeDatabaseFiles(database);
    return result;
}
