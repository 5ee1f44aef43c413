#include "cli/DemoCommand.h"

#include "cli/CliText.h"
#include "cli/CrawlCommands.h"
#include "cli/ProjectLocking.h"
#include "demo/DemoProject.h"
#include "demo/DemoServer.h"
#include "store/DataModelManager.h"
#include "store/Project.h"
#include "store/ProjectLock.h"

namespace DemoCommand {

CommandSpec spec()
{
    return {QStringLiteral("demo"), QStringLiteral("demo [--port N]"), CliText::tr("CliDemoSummary"),
            CliText::tr("CliDemoDetails"), 0, 0, {QStringLiteral("--port")}, {}};
}

int run(CliContext& context)
{
    DataModelManager* manager = context.appDelegate->dataModelManager();
    if (!manager->managedObjectContext())
        return ExitUsage;
    // Taken before the old project is replaced: another demo may be crawling it.
    int status = ExitOk;
    const auto lock = ProjectLocking::take(DemoProject::name(),
                                           manager->fullSQLite3FileNameWithProjectName(DemoProject::name() + QStringLiteral(".sqlite")),
                                           QStringLiteral("demo"), &status);
    if (!lock)
        return status;
    int port = 0;
    if (context.command.values.contains(QStringLiteral("--port"))) {
        bool ok = false;
        port = context.command.values.value(QStringLiteral("--port")).toInt(&ok);
        if (!ok || port < 1 || port > 65535)
            return failWith(ExitUsage, CliText::tr("CliErrorBadPort").arg(context.command.values.value(QStringLiteral("--port"))));
    }
    DemoServer server;
    if (!server.start(port))
        return failWith(ExitFailure, port ? CliText::tr("CliErrorDemoPortBusy").arg(port)
                                          : CliText::tr("CliErrorDemoCannotServe"));
    const QString url = server.baseURL();
    printErr(CliText::tr("CliDemoServed").arg(url));

    ProjectPtr project = DemoProject::recreate(url);
    if (!project)
        return failWith(ExitUsage, CliText::tr("CliErrorCannotCreateDemo").arg(manager->applicationFilesDirectory()));
    status = CrawlCommands::crawlAndReport(project);
    server.stop();
    return status;
}

} // namespace DemoCommand
