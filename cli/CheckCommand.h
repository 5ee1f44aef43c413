#pragma once

#include "cli/CliContext.h"

// check: whether a project's crawl database is sound (see store/CrawlDatabaseCheck.h).
namespace CheckCommand {
CommandSpec spec();
int run(CliContext& context);
} // namespace CheckCommand
