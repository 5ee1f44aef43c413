#pragma once

#include "html/RobotEntry.h"

#include <QList>
#include <QString>

// The robots.txt rules as the crawler applies them. Project::loadRobotsTxt and
// Project::isAllowedURL forward here; these need no project and no database.

// Appends one rule per usable "Disallow:" line, whatever user agent it is listed under.
void loadRobotsTxtToArray(const QString& robotsTxt, QList<RobotEntryPtr>& array);

// False as soon as one rule, in order, disallows the site-relative path; true otherwise.
bool isAllowedURLWithArrayOfDisallowed(const QString& path, const QList<RobotEntryPtr>& array);
