#pragma once

#include "cli/CliContext.h"

#include <QList>

#include <memory>

class Project;

// The reports of a web-rules project: broken pages, resources and external links; external
// links with their verdicts; broken fragments; what robots.txt kept the crawl from.
namespace WebAuditCommands {
QList<CommandSpec> specs();  // external, fragments, robots
// broken, for a project with web rules (AuditCommands hands it over).
int runBroken(CliContext& context, const std::shared_ptr<Project>& project);
int runExternal(CliContext& context);
int runFragments(CliContext& context);
int runRobots(CliContext& context);
} // namespace WebAuditCommands
