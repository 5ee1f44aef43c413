#include "store/ProjectFilePaths.h"

#include "store/DataModelManager.h"
#include "store/Project.h"

#include <QDir>

QString ProjectFilePaths::escapingPath(const DataModelManager& manager, const Project& project)
{
    return escapingPath(manager, project.name(), project.sqlite_name());
}

QString ProjectFilePaths::escapingPath(const DataModelManager& manager, const QString& name, const QString& sqliteName)
{
    const QString directory = manager.applicationFilesDirectory();
    const QString logFolder = manager.defaultLogFolder();
    const QString store = QDir::cleanPath(manager.storeFilePath());
    // Files: below the data directory, and neither the registry nor the log folder.
    for (const QString& file : {manager.fullSQLite3FileNameWithProjectName(sqliteName),
                                manager.fullLogErrorsFileNameWithProjectName(name),
                                manager.fullLogFileNameWithProjectName(name)}) {
        const QString clean = QDir::cleanPath(file);
        if (!isBelow(clean, directory) || clean == store || clean == QDir::cleanPath(logFolder))
            return file;
    }
    // The saved pages folder is removed with all it holds: below the log folder only.
    const QString savedPages = logFolder + QLatin1Char('/') + name;
    if (!isBelow(savedPages, logFolder))
        return savedPages;
    return QString();
}

bool ProjectFilePaths::isBelow(const QString& path, const QString& folder)
{
    const QString cleanFolder = QDir::cleanPath(folder);
    const QString cleanPath = QDir::cleanPath(path);
    const QString prefix = cleanFolder.endsWith(QLatin1Char('/')) ? cleanFolder : cleanFolder + QLatin1Char('/');
    return cleanPath.startsWith(prefix) && cleanPath.size() > prefix.size();
}
