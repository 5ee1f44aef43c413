#include "cli/ProjectCommands.h"

#include "cli/CliText.h"
#include "cli/NewProjectFiles.h"
#include "cli/ProjectAccess.h"
#include "cli/ProjectLocking.h"
#include "store/DataModelManager.h"
#include "store/DatabaseFileCheck.h"
#include "store/DateFormatter.h"
#include "store/ManagedObjectContext.h"
#include "store/Project.h"
#include "store/ProjectLock.h"

#include <QFileInfo>
#include <QUrl>

namespace ProjectCommands {

QList<CommandSpec> specs()
{
    return {
        {QStringLiteral("new"), QStringLiteral("new NAME URL [--depth N] [--pages N]"),
         CliText::tr("CliNewSummary"), CliText::tr("CliNewDetails"),
         2, 2, {QStringLiteral("--depth"), QStringLiteral("--pages")}, {}},
        {QStringLiteral("projects"), QStringLiteral("projects"),
         CliText::tr("CliProjectsSummary"), CliText::tr("CliProjectsDetails"),
         0, 0, {}, {}},
        {QStringLiteral("delete"), QStringLiteral("delete NAME"),
         CliText::tr("CliDeleteSummary"), CliText::tr("CliDeleteDetails"), 1, 1,
         {}, {}},
    };
}

bool isUsableProjectName(const QString& name, QString* why)
{
    if (name.trimmed().isEmpty()) {
        *why = CliText::tr("CliErrorEmptyProjectName");
        return false;
    }
    if (name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\\')) || name.contains(QChar(0))) {
        *why = CliText::tr("CliErrorNameHasSeparator").arg(name);
        return false;
    }
    if (name == QLatin1String(".") || name == QLatin1String("..")) {
        *why = CliText::tr("CliErrorNameNotFileName").arg(name);
        return false;
    }
    return true;
}

bool isCrawlableURL(const QString& url, QString* why)
{
    if (url.isEmpty()) {
        *why = CliText::tr("CliErrorEmptyURL");
        return false;
    }
    const QUrl parsed(url, QUrl::StrictMode);
    const QString scheme = parsed.scheme().toLower();
    if (!parsed.isValid() || (scheme != QLatin1String("http") && scheme != QLatin1String("https"))) {
        *why = CliText::tr("CliErrorNotHttpURL").arg(url);
        return false;
    }
    if (parsed.host().isEmpty()) {
        *why = CliText::tr("CliErrorURLNoHost").arg(url);
        return false;
    }
    return true;
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
    QString url = context.command.operands.value(1).trimmed();
    if (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    QString why;
    if (!isUsableProjectName(name, &why) || !isCrawlableURL(url, &why))
        return failWith(ExitUsage, why);
    qint32 depth = -1, pages = -1;
    if (context.command.values.contains(QStringLiteral("--depth"))
        && !parseLimit(context.command.values.value(QStringLiteral("--depth")), &depth, &why))
        return failWith(ExitUsage, why);
    if (context.command.values.contains(QStringLiteral("--pages"))
        && !parseLimit(context.command.values.value(QStringLiteral("--pages")), &pages, &why))
        return failWith(ExitUsage, why);

    DataModelManager* manager = context.appDelegate->dataModelManager();
    if (!manager->managedObjectContext())
        return ExitUsage;  // the store error has been shown
    if (Project::getProjectWithName(name))
        return failWith(ExitUsage, CliText::tr("CliErrorProjectExists").arg(name));

    // A database file left by an earlier project of that name is taken over, as it always was;
    // only a file made here is removed again.
    const bool databaseWasThere = QFileInfo::exists(manager->fullSQLite3FileNameWithProjectName(name + QStringLiteral(".sqlite")));
    ProjectPtr project = Project::createProjectWithName(name, url, depth, pages);
    if (!project || !project->sqlite3Database()) {
        if (project) {
            project->closeSQLiteDatabase();
            manager->managedObjectContext()->rollback();
        }
        return failWith(ExitUsage, CliText::tr("CliErrorCannotCreateDatabase")
                                       .arg(name, manager->applicationFilesDirectory()));
    }
    QString file;
    if (!NewProjectFiles::usable(*project, *manager, &file, &why)) {
        project->closeSQLiteDatabase();
        if (!databaseWasThere)
            project->deleteSQLiteDatabase();
        manager->managedObjectContext()->rollback();
        return failWith(ExitUsage, CliText::tr("CliErrorCannotCreateFiles")
                                       .arg(name, manager->applicationFilesDirectory(), why, file));
    }
    if (!manager->saveContext()) {
        project->closeSQLiteDatabase();
        project->deleteSQLiteDatabase();
        return failWith(ExitUsage, CliText::tr("CliErrorCannotSaveRegistry")
                                       .arg(manager->applicationFilesDirectory()));
    }
    project->closeSQLiteDatabase();
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
    if (int refused = ExitOk; !ProjectAccess::filesStayInDataDirectory(context, *project, &refused))
        return refused;
    // Held until the files are gone; letting it go removes the lock file too.
    int status = ExitOk;
    const auto lock = ProjectLocking::take(name, project->full_sqlite_name(), QStringLiteral("delete"), &status);
    if (!lock)
        return status;
    project->closeSQLiteDatabase();
    Project::deleteProjectWithName(name);
    if (Project::getProjectWithName(name) == project)
        return failWith(ExitFailure, CliText::tr("CliErrorCannotSaveRegistry")
                                         .arg(manager->applicationFilesDirectory()));
    printOut(CliText::tr("CliDeleted").arg(name));
    return ExitOk;
}

} // namespace ProjectCommands
