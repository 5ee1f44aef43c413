#pragma once

#include "cli/CliContext.h"

#include <QList>

#include <memory>

class Project;

// crawl, crawl-url, vacuum.
namespace CrawlCommands {
QList<CommandSpec> specs();
int runCrawl(CliContext& context);
int runCrawlURL(CliContext& context);
int runVacuum(CliContext& context);

// Crawls the project (the crawler made as for a new crawl; the caller prepared a restart),
// then vacuums it, showing progress, and prints the report. Answers the exit status.
// transferTimeout: seconds a transfer may stay silent; 0 or less keeps the default.
int crawlAndReport(const std::shared_ptr<Project>& project, double transferTimeout = 0);
} // namespace CrawlCommands
