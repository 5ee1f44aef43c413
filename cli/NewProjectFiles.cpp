#include "cli/NewProjectFiles.h"

#include "cli/CliText.h"
#include "store/DataModelManager.h"
#include "store/DatabaseFileCheck.h"
#include "store/Project.h"

#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace NewProjectFiles {

namespace {
// Creates the file and removes it again; a file there already must be writable.
bool canCreate(const QString& path, QString* why)
{
    QFile file(path);
    if (QFileInfo::exists(path)) {
        if (file.open(QIODevice::Append))
            return true;
        *why = file.errorString();
        return false;
    }
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        *why = file.errorString();
        return false;
    }
    file.close();
    file.remove();
    return true;
}
} // namespace

bool usable(Project& project, const DataModelManager& manager, QString* file, QString* why)
{
    *file = project.full_sqlite_name();
    sqlite3* db = project.sqlite3Database();
    if (!db) {
        *why = CliText::tr("CliFilesCannotOpen");
        return false;
    }
    QString missing;
    if (!DatabaseFileCheck::hasCrawlTables(db, &missing)) {
        // Making the tables needs a journal beside the file, whose name is longer.
        const QFileInfo info(*file);
        const long longest = pathconf(QFile::encodeName(info.absolutePath()).constData(), _PC_NAME_MAX);
        const qsizetype journal = QFile::encodeName(info.fileName() + QStringLiteral("-journal")).size();
        if (longest > 0 && journal > longest)
            *why = CliText::tr("CliFilesNameTooLong")
                       .arg(journal)
                       .arg(longest);
        else
            *why = CliText::tr("CliFilesNoTables");
        return false;
    }
    for (const QString& log : {manager.fullLogErrorsFileNameWithProjectName(project.name()),
                               manager.fullLogFileNameWithProjectName(project.name())}) {
        *file = log;
        if (!canCreate(log, why))
            return false;
    }
    file->clear();
    return true;
}

} // namespace NewProjectFiles
