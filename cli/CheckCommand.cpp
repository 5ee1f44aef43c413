#include "cli/CheckCommand.h"

#include "cli/ProjectAccess.h"
#include "cli/ProjectLocking.h"
#include "crawler/CrawlRecordKeeper.h"
#include "store/CrawlDatabaseCheck.h"
#include "store/Project.h"
#include "store/ProjectLock.h"

namespace CheckCommand {

CommandSpec spec()
{
    return {QStringLiteral("check"), QStringLiteral("check NAME"),
            QStringLiteral("check that a project's crawl database is sound"),
            QStringLiteral("Checks, without changing anything: the file's integrity; that each page's links-received\n"
                           "count equals the links recorded to it; that no URL has two pages (a trailing \"/\" aside);\n"
                           "that every link joins two pages; that every analysed page has its queue entry done;\n"
                           "that every done entry left its page or its answer, or was a redirect; and that the\n"
                           "project's page count and depth agree with the queue (not while a crawl runs).\n"
                           "It may run during a crawl. Exit status: 0 sound, 5 something is wrong, 2 bad input\n"
                           "(unknown project; a database that cannot be read, or so damaged that reading it fails).\n"),
            1, 1, {}, {}};
}

int run(CliContext& context)
{
    int status = ExitOk;
    const QString name = context.command.operands.value(0);
    ProjectPtr project = ProjectAccess::open(context, name, ProjectAccess::Need::Read, &status);
    if (!project)
        return status;
    QString out = QStringLiteral("Checking '%1' (%2)\n").arg(project->name(), project->full_sqlite_name());
    CrawlDatabaseCheck check(project->sqlite3Database());
    qint64 owner = 0;
    QString purpose;
    if (ProjectLock::isHeld(ProjectLock::lockFilePathForDatabase(project->full_sqlite_name()), &owner, &purpose))
        out += QStringLiteral("  (in use by %1: its page count and depth are not checked)\n")
                   .arg(ProjectLocking::describeOwner(owner, purpose));
    else
        check.setProjectCounters(CrawlRecordKeeper::pageCountOf(project), project->max_depth());

    const QList<CrawlDatabaseCheck::Rule> rules = check.run();
    int broken = 0;
    for (const auto& rule : rules) {
        const bool holds = rule.problemCount == 0;
        out += QStringLiteral("  %1  %2\n").arg(holds ? QStringLiteral("ok  ") : QStringLiteral("FAIL"), rule.title);
        for (const QString& problem : rule.problems)
            out += QStringLiteral("          %1\n").arg(problem);
        if (rule.problemCount > rule.problems.size())
            out += QStringLiteral("          ... and %1 more\n").arg(rule.problemCount - rule.problems.size());
        for (const QString& note : rule.notes)
            out += QStringLiteral("          note: %1\n").arg(note);
        if (!holds)
            ++broken;
    }
    if (broken == 0)
        out += QStringLiteral("Sound: all %1 checks hold.\n").arg(rules.size());
    else
        out += QStringLiteral("Not sound: %1 of %2 checks fail.\n").arg(broken).arg(rules.size());
    printOut(out);
    return broken == 0 ? ExitOk : ExitCheckFailed;
}

} // namespace CheckCommand
