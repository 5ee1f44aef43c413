#include "cli/ProjectAccess.h"

#include "cli/CliText.h"
#include "crawler/CrawlRecordKeeper.h"
#include "store/DataModelManager.h"
#include "store/DatabaseFileCheck.h"
#include "store/Project.h"
#include "store/ProjectFilePaths.h"
#include "store/SQLite3Wrapper.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <sqlite3.h>

namespace ProjectAccess {

namespace {
QString damagedDatabase(const QString& name, const QString& file, const QString& why)
{
    return CliText::tr("CliErrorDamagedDatabase").arg(name, file, why);
}

bool directoryIsWritable(const QString& directory)
{
    QTemporaryFile probe(directory + QStringLiteral("/.quillmere-write-test-XXXXXX"));
    return probe.open();
}
} // namespace

std::shared_ptr<Project> open(CliContext& context, const QString& name, Need need, int* status)
{
    *status = ExitUsage;
    DataModelManager* manager = context.appDelegate->dataModelManager();
    if (!manager->managedObjectContext())
        return nullptr;
    ProjectPtr project = Project::getProjectWithName(name);
    if (!project) {
        failWith(ExitUsage, CliText::tr("CliErrorNoProjectSee").arg(name));
        return nullptr;
    }
    if (!filesStayInDataDirectory(context, *project, status))
        return nullptr;
    const QString directory = manager->applicationFilesDirectory();
    if (need != Need::Read && !directoryIsWritable(directory)) {
        failWith(ExitUsage, CliText::tr("CliErrorDataDirNotWritable").arg(directory));
        return nullptr;
    }
    const QString file = project->full_sqlite_name();
    if (need == Need::Read && !QFileInfo::exists(file)) {
        failWith(ExitUsage, CliText::tr("CliErrorDatabaseMissing").arg(name, file));
        return nullptr;
    }
    // Made afresh, it would be an empty crawl under the registry's old counts.
    if (need == Need::Write && !QFileInfo::exists(file)) {
        failWith(ExitUsage, CliText::tr("CliErrorDatabaseMissingRestart").arg(name, file));
        return nullptr;
    }
    QString why;
    sqlite3* db = need == Need::Read ? (project->openSQLiteDatabaseForReading() ? project->sqlite3Database() : nullptr)
                                     : project->sqlite3Database();
    if (!db || !DatabaseFileCheck::hasCrawlTables(db, &why)) {
        project->closeSQLiteDatabase();
        failWith(ExitUsage, CliText::tr("CliErrorDatabaseCannotBeRead")
                                .arg(name, file, why.isEmpty() ? CliText::tr("CliErrorUnableToOpen") : why));
        return nullptr;
    }
    // Damaged pages behind a sound header would otherwise show as missing rows, half through
    // a report, or be written over by a crawl. About 20 ms for a crawl of 20,000 pages.
    if (!DatabaseFileCheck::quickCheck(db, &why)) {
        const bool busy = DatabaseFileCheck::isBusy(sqlite3_errcode(db));
        project->closeSQLiteDatabase();
        failWith(ExitUsage, busy ? CliText::tr("CliErrorDatabaseCannotBeRead").arg(name, file, why)
                                 : damagedDatabase(name, file, why));
        return nullptr;
    }
    // The library opens a file it may not write read-only, and every write would then fail
    // one by one under a crawl that reports success.
    if (need != Need::Read && sqlite3_db_readonly(db, "main") != 0) {
        project->closeSQLiteDatabase();
        *status = failWith(ExitFailure, CliText::tr("CliErrorDatabaseReadOnly").arg(name, file));
        return nullptr;
    }
    // What a crawl killed in its end steps left behind in the registry is put right here; only
    // a command that writes saves it.
    if (CrawlRecordKeeper::reconcileWithDatabase(project) && need != Need::Read)
        manager->saveContext(false);
    *status = ExitOk;
    return project;
}

bool filesStayInDataDirectory(CliContext& context, const Project& project, int* status)
{
    DataModelManager* manager = context.appDelegate->dataModelManager();
    const QString escaping = ProjectFilePaths::escapingPath(*manager, project);
    if (escaping.isNull())
        return true;
    *status = failWith(ExitUsage, CliText::tr("CliErrorFilesOutsideDataDir")
                                      .arg(manager->storeFilePath(), project.name(),
                                           manager->applicationFilesDirectory(), escaping));
    return false;
}

int databaseFailureStatus(const std::shared_ptr<Project>& project, Need need)
{
    const auto wrapper = project ? project->database() : nullptr;
    if (!wrapper || !wrapper->hasStepFailure())
        return ExitOk;
    const int code = wrapper->stepFailureCode();
    const QString file = project->full_sqlite_name();
    if (DatabaseFileCheck::isDamage(code))
        return failWith(ExitUsage, damagedDatabase(project->name(), file, wrapper->stepFailureMessage()));
    if (need != Need::Read)
        return failWith(ExitFailure, CliText::tr("CliErrorDatabaseNotWritten")
                                         .arg(project->name(), file, wrapper->stepFailureMessage()));
    return failWith(ExitUsage, CliText::tr("CliErrorDatabaseCannotBeRead")
                                   .arg(project->name(), file, wrapper->stepFailureMessage()));
}

} // namespace ProjectAccess
