#pragma once

#include <QString>

class DataModelManager;
class Project;

// The files a registry row stands for (crawl database, error log, log, saved pages folder)
// must lie inside the application files directory: a row whose name or database file name
// climbs out of it ("../", a name that is "." or "..") comes from a damaged or tampered
// registry, and nothing may be opened, created or removed from it.
class ProjectFilePaths {
public:
    // The first of the project's paths that leaves its place, or a null string when all stay.
    static QString escapingPath(const DataModelManager& manager, const Project& project);
    static QString escapingPath(const DataModelManager& manager, const QString& name, const QString& sqliteName);

    // Whether `path` lies below `folder` (not the folder itself), both compared once cleaned
    // of "." and ".." components.
    static bool isBelow(const QString& path, const QString& folder);
};
