#pragma once

#include "cli/ReportCommands.h"
#include "crawler/StartPageStop.h"

#include <memory>

class Project;

// What a finished crawl's report adds from the fetch log: how many broken links it found,
// why it analysed nothing when it did, and the exit status a CI job gates on.
namespace CrawlAudit {
// crawl --fail-on-broken: a crawl that found broken internal links exits with ExitBrokenLinks.
void setFailOnBroken(bool fail);
// Fills the figures' broken counts and, when nothing was analysed, the explanation, from the
// crawl database and what the run read on its start page.
void complete(const std::shared_ptr<Project>& project, const StartPageStop& stop,
              ReportCommands::CrawlRunFigures* figures);
// The crawl's own status, unless it is ExitOk and broken links, or a start page that failed
// or answered 4xx/5xx, fail the run.
int exitStatus(const std::shared_ptr<Project>& project, int status, const ReportCommands::CrawlRunFigures& figures);
// The explanation printed for a crawl that analysed nothing; empty when it analysed pages.
QString whyNothingWasAnalysed(const std::shared_ptr<Project>& project, const StartPageStop& stop);
} // namespace CrawlAudit
