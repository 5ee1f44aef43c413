#pragma once

#include "cli/CliContext.h"

#include <memory>

class Project;

// Finds the project a command names and checks that its files can be used; on failure
// prints why and answers null with *status set.
namespace ProjectAccess {
// Read opens the crawl database read-only and changes nothing on disk; Write needs the
// database there and writable; Restart lets a missing one be made afresh.
enum class Need { Read, Write, Restart };
std::shared_ptr<Project> open(CliContext& context, const QString& name, Need need, int* status);

// A registry row whose files would lie outside the data directory comes from a damaged
// registry: says so, sets *status and answers false.
bool filesStayInDataDirectory(CliContext& context, const Project& project, int* status);

// After a command has read (or written) the project's database: when one of its statements
// failed, the answers are not whole. Says why and answers the exit status; ExitOk otherwise.
int databaseFailureStatus(const std::shared_ptr<Project>& project, Need need);
} // namespace ProjectAccess
