#pragma once

#include "cli/CliContext.h"

#include <QList>

#include <memory>

class Project;

// show, pages, links: reading a crawl's results; and the report printed after a crawl.
namespace ReportCommands {
QList<CommandSpec> specs();
int runShow(CliContext& context);
int runPages(CliContext& context);
int runLinks(CliContext& context);

struct CrawlRunFigures {
    qint32 pagesThisRun = 0;
    double seconds = 0;
    bool stopped = false;
    QString endError;
    qint64 brokenLinks = 0;    // links found on crawled pages whose target is broken
    qint64 brokenTargets = 0;  // the targets they reach
    QString whyNothing;        // when the crawl analysed nothing: why, and what to do
    bool webRules = false;     // the project reads links as a browser does
    qint64 brokenFragments = 0;  // web rules: links whose #fragment the target lacks
    qint64 misreadBroken = 0;  // classic rules: broken URLs from links a browser reads otherwise
};
// The summary of a crawl on standard output.
void printCrawlReport(const std::shared_ptr<Project>& project, const CrawlRunFigures& figures);
} // namespace ReportCommands
