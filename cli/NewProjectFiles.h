#pragma once

#include <QString>

class DataModelManager;
class Project;

// What `new` checks before it answers success: that the project just created can really use
// its files. A name that fits in a file name may still be too long for the database's journal
// or for NAME_errors.log, and a database without its tables is refused by every command.
namespace NewProjectFiles {

// The project's crawl database holds its tables and its log files can be created. On failure
// answers false with the file at fault and why.
bool usable(Project& project, const DataModelManager& manager, QString* file, QString* why);

} // namespace NewProjectFiles
