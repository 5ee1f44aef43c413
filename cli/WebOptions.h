#pragma once

#include "crawler/WebCrawlOptions.h"
#include "store/LinkRules.h"

#include <QStringList>

#include <memory>

struct CliContext;
class DownloaderOperationLibXML;
class Project;

// The options of the web rules on the command line: --rules for the commands that make a
// project, and what a web crawl may be told.
namespace WebOptions {
// For the specs.
QStringList crawlValueOptions();
QStringList crawlFlagOptions();
QString rulesHelp();
QString crawlHelp();

// --rules classic|web (classic when absent). False, with the message shown, on another word.
bool rules(const CliContext& context, LinkRules* rules, int* status);
// Reads the web crawl options. *given: whether any was on the line. False, with the message
// shown, on a value that makes no sense.
bool crawlOptions(const CliContext& context, WebCrawlOptions* options, bool* given, int* status);
// A classic project refuses web options (they would be silently ignored): false with the
// message shown.
bool acceptedBy(const std::shared_ptr<Project>& project, const CliContext& context, bool given, int* status);
// Hands the options to the crawl, when it is a web one.
void applyTo(DownloaderOperationLibXML& operation, const WebCrawlOptions& options);
} // namespace WebOptions
