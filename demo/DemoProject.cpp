#include "demo/DemoProject.h"

#include "store/ApplicationDelegate.h"
#include "store/DataModelManager.h"
#include "store/Project.h"
#include "store/ProjectLock.h"

#include <QFileInfo>

namespace DemoProject {

ProjectCatalog::Result recreate(const QString& url, const StringTable& text, const QString& purpose)
{
    ApplicationDelegate* delegate = ApplicationDelegate::sharedAppDelegate();
    DataModelManager* manager = delegate ? delegate->dataModelManager() : nullptr;
    ProjectCatalog::Result unavailable;
    unavailable.outcome = ProjectCatalog::Outcome::StoreUnavailable;
    if (!manager || !manager->managedObjectContext())
        return unavailable;
    ProjectCatalog catalog(*manager, text);
    if (ProjectPtr old = Project::getProjectWithName(name())) {
        ProjectCatalog::Result removed = catalog.remove(old, purpose);
        if (!removed.done())
            return removed;
    } else {
        // Files of a demo whose project was never saved (a demo killed as it began): they are
        // the demo's own, made afresh each time, so they go, under the lock like any delete.
        const QString sqliteName = name() + QStringLiteral(".sqlite");
        ProjectLock lock(ProjectLock::lockFilePathForDatabase(manager->fullSQLite3FileNameWithProjectName(sqliteName)));
        if (lock.tryLock(purpose) == ProjectLock::Result::Locked) {
            for (const QString& file : catalog.projectFiles(name(), sqliteName)) {
                if (QFileInfo(file).isDir())
                    manager->deleteHtmlLocalFilesWithProjectName(name());
                else if (QFileInfo::exists(file))
                    QFile::remove(file);
            }
        }
    }
    ProjectCatalog::Result made = catalog.create(name(), url, -1, -1, purpose);
    if (made.done() && !made.project->sqlite3Database())
        return unavailable;
    return made;
}

} // namespace DemoProject
