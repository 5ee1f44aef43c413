#include "cli/ReportOptions.h"

#include "cli/CliText.h"

namespace ReportOptions {

bool format(CliContext& context, ReportWriter::Format* format, int* status)
{
    const QString text = context.command.values.value(QStringLiteral("--format"), QStringLiteral("table"));
    if (!ReportWriter::parseFormat(text, format)) {
        *status = failWith(ExitUsage, CliText::tr("CliErrorBadFormat").arg(text));
        return false;
    }
    return true;
}

QString formatHelp()
{
    return CliText::tr("CliFormatHelp");
}

} // namespace ReportOptions
