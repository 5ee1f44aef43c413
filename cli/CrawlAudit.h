#pragma once

#include "cli/ReportCommands.h"

#include <memory>

class Project;

// What a finished crawl's report adds from the fetch log: how many broken links it found,
// why it analysed nothing when it did, and the exit status a CI job gates on.
namespace CrawlAudit {
// crawl --fail-on-broken: a crawl that found broken internal links exits with ExitBrokenLinks.
void setFailOnBroken(bool fail);
// Fills the figures' broken counts and, when nothing was analysed, the explanation.
void complete(const std::shared_ptr<Project>& project, ReportCommands::CrawlRunFigures* figures);
// The crawl's own status, unless it is ExitOk and broken links fail the run.
int exitStatus(int status, const ReportCommands::CrawlRunFigures& figures);
// The explanation printed for a crawl that analysed nothing; empty when it analysed pages.
QString whyNothingWasAnalysed(const std::shared_ptr<Project>& project);
} // namespace CrawlAudit
