#pragma once

#include "cli/CliContext.h"
#include "store/ReportWriter.h"

// The options the report commands share.
namespace ReportOptions {
// --format: table (default), csv, json or markdown. On a bad value prints why, sets *status.
bool format(CliContext& context, ReportWriter::Format* format, int* status);
QString formatHelp();
} // namespace ReportOptions
