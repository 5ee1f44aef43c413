#pragma once

#include "store/ProjectCatalog.h"

#include <QString>

#include <memory>

class StringTable;

// The project 'demo' of the demo site.
namespace DemoProject {
inline const QString name()
{
    return QStringLiteral("demo");
}
// The server's port changes from one run to the next: the demo project starts afresh each
// time, whatever state an earlier run left it in. Goes through the catalog like any delete and
// create, so a demo that another program is crawling is refused, not deleted under it. When
// done, the result holds the new project, saved, with its crawl database open, and its lock.
ProjectCatalog::Result recreate(const QString& url, const StringTable& text, const QString& purpose);
} // namespace DemoProject
