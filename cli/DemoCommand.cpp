#include "cli/DemoCommand.h"

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
    return {QStringLiteral("demo"), QStringLiteral("demo"),
            QStringLiteral("serve the built-in demo site on 127.0.0.1 and crawl it as project 'demo'"),
            QStringLiteral("Creates the project 'demo' (or restarts it), crawls the site, prints the report and stops\n"
                           "the server. Then try: quillmere pages demo --filter 404, quillmere show demo.\n"),
            0, 0, {}, {}};
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
    DemoServer server;
    if (!server.start())
        return failWith(ExitFailure, QStringLiteral("cannot serve the demo site on 127.0.0.1"));
    const QString url = server.baseURL();
    std::fprintf(stderr, "Demo site served at %s\n", qPrintable(url));

    ProjectPtr project = DemoProject::recreate(url);
    if (!project)
        return failWith(ExitUsage, QStringLiteral("cannot create the project 'demo' in %1").arg(manager->applicationFilesDirectory()));
    status = CrawlCommands::crawlAndReport(project);
    server.stop();
    return status;
}

} // namespace DemoCommand
