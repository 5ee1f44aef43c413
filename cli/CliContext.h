#pragma once

#include "cli/CliErrorPresenter.h"
#include "cli/CommandLine.h"
#include "store/ApplicationDelegate.h"

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

// "quillmere: <message>" on standard error; answers the status to exit with.
inline int failWith(int status, const QString& message)
{
    std::fprintf(stderr, "quillmere: %s\n", qPrintable(message));
    return status;
}

inline void printOut(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
}
