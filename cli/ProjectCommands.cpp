#include "cli/ProjectCommands.h"

#include "cli/WebOptions.h"

#include "cli/CliText.h"
#include "cli/NewProjectFiles.h"
#include "store/DataModelManager.h"
#include "store/DatabaseFileCheck.h"
#include "store/DateFormatter.h"
#include "store/ManagedObjectContext.h"
#include "store/Project.h"
#include "store/ProjectCatalog.h"
#include "store/ProjectRules.h"
#include "store/StringTable.h"

namespace ProjectCommands {

QList<CommandSpec> specs()
{
    return {
        {QStringLiteral("new"), QStringLiteral("new NAME URL [--depth N] [--pages N] [--rules classic|web]"),
         CliText::tr("CliNewSummary"), CliText::tr("CliNewDetails") + WebOptions::rulesHelp(),
         2, 2, {QStringLiteral("--depth"), QStringLiteral("--pages"), QStringLiteral("--rules")}, {}},
        {QStringLiteral("projects"), QStringLiteral("projects"),
         CliText::tr("CliProjectsSummary"), CliText::tr("CliProjectsDetails"),
         0, 0, {}, {}},
        {QStringLiteral("delete"), QStringLiteral("delete NAME"),
         CliText::tr("CliDeleteSummary"), CliText::tr("CliDeleteDetails"), 1, 1,
         {}, {}},
    };
}

namespace {
const StringTable& cliText()
{
    return StringTable::forLanguage(CliText::language());
}
} // namespace

bool isUsableProjectName(const QString& name, QString* why)
{
    return ProjectRules::isUsableName(name, cliText(), why);
}

bool isCrawlableURL(const QString& url, QString* why)
{
    return ProjectRules::isCrawlableURL(url, cliText(), why);
}

bool parseLimit(const QString& text, qint32* value, QString* why)
{
    bool ok = false;
    const int n = text.trimmed().toInt(&ok);
    if (!ok || n < -1) {
        *why = CliText::tr("CliErrorBadLimit").arg(text);
        return false;
    }
    *value = n;
    return true;
}

int runNew(CliContext& context)
{
    const QString name = context.command.operands.value(0);
    const QString typed = ProjectRules::urlFromInput(context.command.operands.value(1));
    QString why;
    const QString normal = ProjectRules::normalForm(typed);
    if (!isUsableProjectName(name, &why) || !isCrawlableURL(normal.isNull() ? typed : normal, &why))
        return failWith(ExitUsage, why);
    qint32 depth = -1, pages = -1;
    if (context.command.values.contains(QStringLiteral("--depth"))
        && !parseLimit(context.command.values.value(QStringLiteral("--depth")), &depth, &why))
        return failWith(ExitUsage, why);
    if (context.command.values.contains(QStringLiteral("--pages"))
        && !parseLimit(context.command.values.value(QStringLiteral("--pages")), &pages, &why))
        return failWith(ExitUsage, why);
    int status = ExitOk;
    LinkRules rules = LinkRules::Classic;
    if (!WebOptions::rules(context, &rules, &status))
        return status;

    DataModelManager* manager = context.appDelegate->dataModelManager();
    ProjectCatalog catalog(*manager, cliText());
    const auto verify = [manager](Project& project, QString* refusal) {
        QString file, reason;
        if (NewProjectFiles::usable(project, *manager, &file, &reason))
            return true;
        *refusal = CliText::tr("CliErrorCannotCreateFiles")
                       .arg(project.name(), manager->applicationFilesDirectory(), reason, file);
        return false;
    };
    const ProjectCatalog::Result created = catalog.create(name, typed, depth, pages, QStringLiteral("quillmere new"), verify, rules);
    switch (created.outcome) {
    case ProjectCatalog::Outcome::Done:
        break;
    case ProjectCatalog::Outcome::StoreUnavailable:
        return ExitUsage;  // the store error has been shown
    case ProjectCatalog::Outcome::InUse:
        return failWith(created.lockRefusal && created.lockRefusal->inUse() ? ExitProjectInUse : ExitUsage, created.why);
    default:
        return failWith(ExitUsage, created.why);
    }
    const QString url = created.project->url();
    created.project->closeSQLiteDatabase();
    if (url != typed)
        printOut(CliText::tr("CliNewURLStoredAs").arg(typed, url));
    printOut(CliText::tr("CliNewCreated")
                 .arg(name, url, depth == -1 ? CliText::tr("CliLimitNone") : QString::number(depth),
                      pages == -1 ? CliText::tr("CliLimitNone") : QString::number(pages)));
    return ExitOk;
}

namespace {
QString limitText(qint32 limit)
{
    return limit == -1 ? QStringLiteral("-") : QString::number(limit);
}
} // namespace

int runProjects(CliContext& context)
{
    if (!context.appDelegate->dataModelManager()->managedObjectContext())
        return ExitUsage;
    const auto projects = Project::getAllProjects();
    if (projects.isEmpty()) {
        // The registry swallows read errors: tell an empty registry from an unreadable one.
        DataModelManager* manager = context.appDelegate->dataModelManager();
        AppError error;
        if (manager->managedObjectContext()->countForFetchRequest(FetchRequest{}, &error) == ManagedObjectContext::NotFound)
            return failWith(ExitUsage, CliText::tr(DatabaseFileCheck::isDamage(error.code) ? "CliErrorRegistryDamaged"
                                                                                           : "CliErrorRegistryCannotBeRead")
                                           .arg(manager->storeFilePath(), error.localizedFailureReason));
        printOut(CliText::tr("CliNoProjects"));
        return ExitOk;
    }
    QList<QStringList> rows{{CliText::tr("CliProjectsColumnName"), CliText::tr("CliProjectsColumnURL"),
                             CliText::tr("CliProjectsColumnCreated"), CliText::tr("CliProjectsColumnDepthLimit"),
                             CliText::tr("CliProjectsColumnPageLimit"), CliText::tr("CliProjectsColumnPages"),
                             CliText::tr("CliProjectsColumnDepth")}};
    for (const auto& p : projects) {
        rows.append({DisplayText::escapeControls(p->name()), DisplayText::escapeControls(p->url()),
                     DateFormatter::stringFromDate(p->creation_date()), limitText(p->limit_depth()),
                     limitText(p->limit_page_count()), QString::number(p->pages_count()),
                     QString::number(p->max_depth())});
    }
    QList<int> widths(rows.first().size(), 0);
    for (const auto& row : rows)
        for (int c = 0; c < row.size(); ++c)
            widths[c] = std::max(widths[c], int(row[c].size()));
    for (const auto& row : rows) {
        QString line;
        for (int c = 0; c < row.size(); ++c)
            line += (c ? QStringLiteral("  ") : QString()) + (c + 1 < row.size() ? row[c].leftJustified(widths[c]) : row[c]);
        printOut(line + QLatin1Char('\n'));
    }
    return ExitOk;
}

int runDelete(CliContext& context)
{
    const QString name = context.command.operands.value(0);
    DataModelManager* manager = context.appDelegate->dataModelManager();
    if (!manager->managedObjectContext())
        return ExitUsage;
    ProjectPtr project = Project::getProjectWithName(name);
    if (!project)
        return failWith(ExitUsage, CliText::tr("CliErrorNoProject").arg(name));
    ProjectCatalog catalog(*manager, cliText());
    const ProjectCatalog::Result removed = catalog.remove(project, QStringLiteral("quillmere delete"));
    switch (removed.outcome) {
    case ProjectCatalog::Outcome::Done:
        break;
    case ProjectCatalog::Outcome::StoreUnavailable:
        return ExitUsage;
    case ProjectCatalog::Outcome::InUse:
        return failWith(removed.lockRefusal && removed.lockRefusal->inUse() ? ExitProjectInUse : ExitUsage, removed.why);
    case ProjectCatalog::Outcome::NotSaved:
        return failWith(ExitFailure, removed.why);
    default:
        return failWith(ExitUsage, removed.why);
    }
    printOut(CliText::tr("CliDeleted").arg(name));
    return ExitOk;
}

} // namespace ProjectCommands
