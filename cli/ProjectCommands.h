#pragma once

#include "cli/CliContext.h"

#include <QList>

// new, projects, delete: the registry from the command line.
namespace ProjectCommands {
QList<CommandSpec> specs();
int runNew(CliContext& context);
int runProjects(CliContext& context);
int runDelete(CliContext& context);

// Checks shared with other commands.
bool isUsableProjectName(const QString& name, QString* why);
bool isCrawlableURL(const QString& url, QString* why);
bool parseLimit(const QString& text, qint32* value, QString* why);
} // namespace ProjectCommands
