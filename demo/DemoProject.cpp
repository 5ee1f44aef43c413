#include "demo/DemoProject.h"

#include "store/ApplicationDelegate.h"
#include "store/DataModelManager.h"
#include "store/Project.h"

namespace DemoProject {

std::shared_ptr<Project> recreate(const QString& url)
{
    ApplicationDelegate* delegate = ApplicationDelegate::sharedAppDelegate();
    if (!delegate || !delegate->managedObjectContext())
        return nullptr;
    if (ProjectPtr old = Project::getProjectWithName(name())) {
        old->closeSQLiteDatabase();
        Project::deleteProjectWithName(name());
    }
    ProjectPtr project = Project::createProjectWithName(name(), url, -1, -1);
    if (!project || !project->sqlite3Database() || !delegate->saveContext())
        return nullptr;
    return project;
}

} // namespace DemoProject
