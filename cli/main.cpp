// quillmere: the command-line face of the crawler.
#include "cli/AuditCommands.h"
#include "cli/WebAuditCommands.h"
#include "cli/CheckCommand.h"
#include "cli/CliContext.h"
#include "cli/CliText.h"
#include "cli/CommandLine.h"
#include "cli/CrawlCommands.h"
#include "cli/DemoCommand.h"
#include "cli/ProjectCommands.h"
#include "cli/ReportCommands.h"
#include "store/DataModelManager.h"
#include "store/Localization.h"

#include <QCoreApplication>

#include <functional>

namespace {
struct Command {
    CommandSpec spec;
    std::function<int(CliContext&)> run;
    // Reads the data directory and changes nothing in it.
    bool readsOnly = false;
};

QList<Command> commands()
{
    QList<Command> list;
    const auto projectSpecs = ProjectCommands::specs();
    list.append({projectSpecs[0], ProjectCommands::runNew});
    list.append({projectSpecs[1], ProjectCommands::runProjects, true});
    list.append({projectSpecs[2], ProjectCommands::runDelete});
    const auto crawlSpecs = CrawlCommands::specs();
    list.append({crawlSpecs[0], CrawlCommands::runCrawl});
    list.append({crawlSpecs[1], CrawlCommands::runCrawlURL});
    list.append({crawlSpecs[2], CrawlCommands::runVacuum});
    const auto reportSpecs = ReportCommands::specs();
    list.append({reportSpecs[0], ReportCommands::runShow, true});
    list.append({reportSpecs[1], ReportCommands::runPages, true});
    list.append({reportSpecs[2], ReportCommands::runLinks, true});
    const auto auditSpecs = AuditCommands::specs();
    list.append({auditSpecs[0], AuditCommands::runBroken, true});
    list.append({auditSpecs[1], AuditCommands::runRedirects, true});
    list.append({auditSpecs[2], AuditCommands::runSitemap, true});
    const auto webSpecs = WebAuditCommands::specs();
    list.append({webSpecs[0], WebAuditCommands::runExternal, true});
    list.append({webSpecs[1], WebAuditCommands::runFragments, true});
    list.append({webSpecs[2], WebAuditCommands::runRobots, true});
    list.append({CheckCommand::spec(), CheckCommand::run, true});
    list.append({DemoCommand::spec(), DemoCommand::run});
    return list;
}
} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quillmere"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLMERE_VERSION));
    // The French table stays installed for what the crawl stores (page titles); the command
    // line's own texts follow the locale.
    Localization::install();
    CliText::setLanguage(StringTable::languageFromEnvironment());

    const QList<Command> all = commands();
    QList<CommandSpec> specs;
    for (const auto& c : all)
        specs.append(c.spec);

    CliContext context;
    QString dataDir, error;
    if (!CommandLine::parse(QCoreApplication::arguments(), specs, &dataDir, &context.command, &error)) {
        failWith(ExitUsage, error);
        std::fprintf(stderr, "%s\n", qPrintable(CliText::tr("CliTryHelp")));
        return ExitUsage;
    }
    if (context.command.help) {
        for (const auto& c : all) {
            if (c.spec.name == context.command.command) {
                printOut(CommandLine::commandHelp(c.spec));
                return ExitOk;
            }
        }
        printOut(CommandLine::usage(specs));
        return ExitOk;
    }
    if (!dataDir.isEmpty())
        DataModelManager::setDataDirectoryOverride(dataDir);

    for (const auto& c : all) {
        if (c.spec.name == context.command.command)
            DataModelManager::setReadOnly(c.readsOnly);
    }
    CliErrorPresenter presenter;
    CoreAppDelegate appDelegate(&presenter);
    context.appDelegate = &appDelegate;
    for (const auto& c : all) {
        if (c.spec.name == context.command.command)
            return c.run(context);
    }
    return ExitUsage;
}
