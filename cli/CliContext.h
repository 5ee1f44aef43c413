#pragma once

#include "cli/CliErrorPresenter.h"
#include "cli/CommandLine.h"
#include "store/ApplicationDelegate.h"
#include "store/DisplayText.h"

#include <QString>

#include <cstdio>

enum ExitStatus {
    ExitOk = 0,
    ExitFailure = 1,
    ExitUsage = 2,
    ExitFirstUrlError = 3,
    ExitBrokenLinks = 4,    // crawl --fail-on-broken found broken internal links
    ExitCheckFailed = 5,    // check found the crawl database unsound
    ExitProjectInUse = 6,   // another process crawls, vacuums or deletes the project
    ExitInterrupted = 130
};

// What every command gets: the parsed command line and the application (registry, files).
struct CliContext {
    ParsedCommand command;
    CoreAppDelegate* appDelegate = nullptr;
};

// "quillmere: <message>" on standard error; answers the status to exit with. What the
// terminal shows has its control characters escaped and URL credentials masked.
inline int failWith(int status, const QString& message)
{
    std::fprintf(stderr, "quillmere: %s\n", qPrintable(DisplayText::forTerminal(message, DisplayText::LineBreaks::Keep)));
    return status;
}

// A line (or lines) on standard error, shown as failWith shows its message.
inline void printErr(const QString& text, const char* end = "\n")
{
    std::fprintf(stderr, "%s%s", qPrintable(DisplayText::forTerminal(text, DisplayText::LineBreaks::Keep)), end);
}

inline void printOut(const QString& text)
{
    const QByteArray bytes = DisplayText::forTerminal(text, DisplayText::LineBreaks::Keep).toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
}
