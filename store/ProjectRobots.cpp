// The robots.txt operations of Project: its rules are read and matched by the html layer.
#include "store/Project.h"

#include "html/RobotEntry.h"
#include "html/RobotsTxt.h"

void Project::loadRobotsTxt(const QString& robotsTxt, QList<std::shared_ptr<RobotEntry>>& array) const
{
    loadRobotsTxtToArray(robotsTxt, array);
}

bool Project::isAllowedURL(const QString& path, const QList<std::shared_ptr<RobotEntry>>& array) const
{
    return isAllowedURLWithArrayOfDisallowed(path, array);
}
