#pragma once

#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

// What one command accepts: how many operands, which options take a value, which are flags.
struct CommandSpec {
    QString name;
    QString synopsis;     // "new NAME URL [--depth N] [--pages N]"
    QString summary;      // one line for the command list
    QString details;      // the command's own help text
    int minOperands = 0;
    int maxOperands = 0;
    QStringList valueOptions;
    QStringList flagOptions;
};

struct ParsedCommand {
    QString command;
    QStringList operands;
    QMap<QString, QString> values;       // the last value of each option
    QMap<QString, QStringList> lists;    // every value of each option, in order (repeatable options)
    QSet<QString> flags;
    bool help = false;
};

// Splits argv into the global --data-dir, the command, its operands and options.
// On a usage error answers false and sets *error.
class CommandLine {
public:
    static bool parse(const QStringList& arguments, const QList<CommandSpec>& specs, QString* dataDir,
                      ParsedCommand* parsed, QString* error);
    static QString usage(const QList<CommandSpec>& specs);
    static QString commandHelp(const CommandSpec& spec);
};
