#include "cli/CheckCommand.h"

#include "cli/CliText.h"
#include "cli/ProjectAccess.h"
#include "cli/ProjectLocking.h"
#include "crawler/CrawlRecordKeeper.h"
#include "store/CrawlDatabaseCheck.h"
#include "store/Project.h"
#include "store/ProjectLock.h"

#include <algorithm>

namespace CheckCommand {

CommandSpec spec()
{
    return {QStringLiteral("check"), QStringLiteral("check NAME"), CliText::tr("CliCheckSummary"),
            CliText::tr("CliCheckDetails"), 1, 1, {}, {}};
}

int run(CliContext& context)
{
    int status = ExitOk;
    const QString name = context.command.operands.value(0);
    ProjectPtr project = ProjectAccess::open(context, name, ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    QString out = CliText::tr("CliCheckHeader").arg(project->name(), project->full_sqlite_name());
    CrawlDatabaseCheck check(project->sqlite3Database(), StringTable::forLanguage(CliText::language()));
    qint64 owner = 0;
    QString purpose;
    if (ProjectLock::isHeld(ProjectLock::lockFilePathForDatabase(project->full_sqlite_name()), &owner, &purpose))
        out += CliText::tr("CliCheckInUse")
                   .arg(ProjectLocking::describeOwner(owner, purpose));
    else
        check.setProjectCounters(CrawlRecordKeeper::pageCountOf(project), project->max_depth());

    const QList<CrawlDatabaseCheck::Rule> rules = check.run();
    // The verdicts share one width, and what a rule lists lines up just past it.
    const QString ok = CliText::tr("CliCheckOk"), fail = CliText::tr("CliCheckFail");
    const qsizetype width = std::max(ok.size(), fail.size());
    const QString indent(width + 6, QLatin1Char(' '));
    int broken = 0;
    for (const auto& rule : rules) {
        const bool holds = rule.problemCount == 0;
        out += QStringLiteral("  %1  %2\n").arg((holds ? ok : fail).leftJustified(width), rule.title);
        for (const QString& problem : rule.problems)
            out += indent + problem + QLatin1Char('\n');
        if (rule.problemCount > rule.problems.size())
            out += indent + CliText::tr("CliCheckMore").arg(rule.problemCount - rule.problems.size()) + QLatin1Char('\n');
        for (const QString& note : rule.notes)
            out += indent + CliText::tr("CliCheckNote").arg(note) + QLatin1Char('\n');
        if (!holds)
            ++broken;
    }
    if (broken == 0)
        out += CliText::tr("CliCheckSound").arg(rules.size());
    else
        out += CliText::tr("CliCheckNotSound").arg(broken).arg(rules.size());
    printOut(out);
    return broken == 0 ? ExitOk : ExitCheckFailed;
}

} // namespace CheckCommand
