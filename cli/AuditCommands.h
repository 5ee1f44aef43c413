#pragma once

#include "cli/CliContext.h"

#include <QList>

// broken, redirects, sitemap: the audit's answers, read from the fetch log.
namespace AuditCommands {
QList<CommandSpec> specs();
int runBroken(CliContext& context);
int runRedirects(CliContext& context);
int runSitemap(CliContext& context);
} // namespace AuditCommands
