#pragma once

#include "cli/CliContext.h"
#include "crawler/CrawlSettings.h"
#include "crawler/WebCrawlOptions.h"

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
int crawlAndReport(const std::shared_ptr<Project>& project, const CrawlSettings& settings = CrawlSettings(),
                   const WebCrawlOptions& webOptions = WebCrawlOptions());
} // namespace CrawlCommands
