#pragma once

#include <QString>

#include <memory>

class Project;

// The project 'demo' of the demo site.
namespace DemoProject {
inline const QString name()
{
    return QStringLiteral("demo");
}
// The server's port changes from one run to the next: the demo project starts afresh each
// time, whatever state an earlier run left it in. Answers the new project, saved, with its
// crawl database open; none when either could not be made.
std::shared_ptr<Project> recreate(const QString& url);
} // namespace DemoProject
