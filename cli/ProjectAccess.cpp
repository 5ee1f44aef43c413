#include "cli/ProjectAccess.h"

#include "store/DataModelManager.h"
#include "store/Project.h"

#include <QFileInfo>
#include <QTemporaryFile>

#include <sqlite3.h>

namespace ProjectAccess {

namespace {
// The four tables a crawl needs; a file that lacks one was not made by us, or is damaged.
bool hasCrawlTables(sqlite3* db, QString* why)
{
    sqlite3_stmt* stmt = nullptr;
    const char* sql = "select count(*) from sqlite_master where type='table' and name in "
                      "('Page','Links','DownloaderQueue','LinkHeaders')";
    if (sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr) != SQLITE_OK) {
        *why = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_finalize(stmt);
        return false;
    }
    int tables = 0;
    if (sqlite3_step(stmt) == SQLITE_ROW)
        tables = sqlite3_column_int(stmt, 0);
    else
        *why = QString::fromUtf8(sqlite3_errmsg(db));
    sqlite3_finalize(stmt);
    if (tables != 4 && why->isEmpty())
        *why = QStringLiteral("some of its tables are missing");
    return tables == 4;
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
        failWith(ExitUsage, QStringLiteral("no project named '%1' (see 'quillmere projects')").arg(name));
        return nullptr;
    }
    const QString directory = manager->applicationFilesDirectory();
    if (need == Need::Write && !directoryIsWritable(directory)) {
        failWith(ExitUsage, QStringLiteral("the data directory %1 cannot be written").arg(directory));
        return nullptr;
    }
    const QString file = project->full_sqlite_name();
    if (need == Need::Read && !QFileInfo::exists(file)) {
        failWith(ExitUsage, QStringLiteral("the crawl database of '%1' is missing (%2)").arg(name, file));
        return nullptr;
    }
    sqlite3* db = project->sqlite3Database();
    QString why;
    if (!db || !hasCrawlTables(db, &why)) {
        project->closeSQLiteDatabase();
        failWith(ExitUsage, QStringLiteral("the crawl database of '%1' cannot be read (%2): %3")
                                .arg(name, file, why.isEmpty() ? QStringLiteral("unable to open it") : why));
        return nullptr;
    }
    *status = ExitOk;
    return project;
}

} // namespace ProjectAccess
