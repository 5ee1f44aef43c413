#include "cli/CommandLine.h"

#include "cli/CliText.h"

namespace {
const CommandSpec* findSpec(const QList<CommandSpec>& specs, const QString& name)
{
    for (const auto& s : specs)
        if (s.name == name)
            return &s;
    return nullptr;
}
} // namespace

bool CommandLine::parse(const QStringList& arguments, const QList<CommandSpec>& specs, QString* dataDir,
                        ParsedCommand* parsed, QString* error)
{
    const CommandSpec* spec = nullptr;
    bool operandsOnly = false;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString arg = arguments[i];
        auto takeValue = [&](const QString& option, QString* out) {
            const int eq = arg.indexOf(QLatin1Char('='));
            if (eq > 0) {
                *out = arg.mid(eq + 1);
                return true;
            }
            if (i + 1 >= arguments.size()) {
                *error = CliText::tr("CliErrorOptionNeedsValue").arg(option);
                return false;
            }
            *out = arguments[++i];
            return true;
        };
        if (!operandsOnly && arg == QLatin1String("--")) {
            operandsOnly = true;
            continue;
        }
        if (!operandsOnly && arg.startsWith(QLatin1String("-")) && arg.size() > 1) {
            const QString option = arg.section(QLatin1Char('='), 0, 0);
            if (option == QLatin1String("--help") || option == QLatin1String("-h")) {
                parsed->help = true;
                continue;
            }
            if (option == QLatin1String("--data-dir")) {
                if (!takeValue(option, dataDir))
                    return false;
                if (dataDir->isEmpty()) {
                    *error = CliText::tr("CliErrorDataDirNeedsDirectory");
                    return false;
                }
                continue;
            }
            if (spec && spec->valueOptions.contains(option)) {
                QString value;
                if (!takeValue(option, &value))
                    return false;
                parsed->values.insert(option, value);
                parsed->lists[option].append(value);
                continue;
            }
            if (spec && spec->flagOptions.contains(option) && option == arg) {
                parsed->flags.insert(option);
                continue;
            }
            *error = spec ? CliText::tr("CliErrorUnknownOptionFor").arg(arg, spec->name)
                          : CliText::tr("CliErrorUnknownOption").arg(arg);
            return false;
        }
        if (!spec) {
            spec = findSpec(specs, arg);
            if (!spec) {
                if (arg == QLatin1String("help")) {
                    parsed->help = true;
                    continue;
                }
                *error = CliText::tr("CliErrorUnknownCommand").arg(arg);
                return false;
            }
            parsed->command = arg;
            continue;
        }
        parsed->operands.append(arg);
    }
    if (parsed->help)
        return true;
    if (!spec) {
        *error = CliText::tr("CliErrorNoCommand");
        return false;
    }
    if (parsed->operands.size() < spec->minOperands || parsed->operands.size() > spec->maxOperands) {
        *error = CliText::tr("CliErrorUsage").arg(spec->synopsis);
        return false;
    }
    return true;
}

QString CommandLine::usage(const QList<CommandSpec>& specs)
{
    QString text = CliText::tr("CliUsageIntro");
    for (const auto& s : specs)
        text += QStringLiteral("  %1\n      %2\n").arg(s.synopsis, s.summary);
    text += CliText::tr("CliUsageOptions");
    return text;
}

QString CommandLine::commandHelp(const CommandSpec& spec)
{
    return CliText::tr("CliCommandHelp").arg(spec.synopsis, spec.summary, spec.details);
}
