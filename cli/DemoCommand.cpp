#include "cli/DemoCommand.h"

#include "cli/CliText.h"
#include "cli/CrawlCommands.h"
#include "demo/DemoProject.h"
#include "demo/DemoServer.h"
#include "store/DataModelManager.h"
#include "store/Project.h"
#include "store/StringTable.h"

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

    // Held to the end of the crawl: another demo may want the same project.
    const ProjectCatalog::Result made =
        DemoProject::recreate(url, StringTable::forLanguage(CliText::language()), QStringLiteral("quillmere demo"));
    if (made.outcome == ProjectCatalog::Outcome::InUse)
        return failWith(ExitProjectInUse, made.why);
    if (!made.done())
        return failWith(ExitUsage, made.why.isEmpty() ? CliText::tr("CliErrorCannotCreateDemo").arg(manager->applicationFilesDirectory())
                                                     : made.why);
    const int status = CrawlCommands::crawlAndReport(made.project);
    server.stop();
    return status;
}

} // namespace DemoCommand
