#include "cli/CrawlCommands.h"

#include "cli/CliCrawlController.h"
#include "cli/CrawlAudit.h"
#include "cli/ProjectAccess.h"
#include "cli/ProjectCommands.h"
#include "cli/ProjectLocking.h"
#include "cli/ReportCommands.h"
#include "cli/StopSignal.h"
#include "crawler/CrawlStartDecision.h"
#include "crawler/DownloaderCmdLineTestController.h"
#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/MainThread.h"
#include "crawler/OperationQueue.h"
#include "crawler/VacuumCleanerOperation.h"
#include "fetch/SynchronizedWebCall.h"
#include "store/DataModelManager.h"
#include "store/Project.h"
#include "store/ProjectLock.h"
#include "store/QuillmereDownloaderQueue.h"
#include "store/QuillmerePage.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QFileInfo>
#include <QStorageInfo>
#include <QTextStream>
#include <QUrl>

#include <cstdio>

#include <unistd.h>

namespace CrawlCommands {

namespace {
using CrawlStartDecision::Choice;
using CrawlStartDecision::Situation;

QString askOnTerminal(const QString& question)
{
    std::fprintf(stderr, "%s ", qPrintable(question));
    std::fflush(stderr);
    QTextStream in(stdin);
    return in.readLine().trimmed().toLower();
}

// The window's start alerts, as flags or, on a terminal, as a question.
Choice decide(CliContext& context, const ProjectPtr& project, int* status)
{
    const bool wantContinue = context.command.flags.contains(QStringLiteral("--continue"));
    const bool wantRestart = context.command.flags.contains(QStringLiteral("--restart"));
    *status = ExitOk;
    if (wantContinue && wantRestart) {
        *status = failWith(ExitUsage, QStringLiteral("--continue and --restart exclude each other"));
        return Choice::Decline;
    }
    qint64 waiting = 0;
    const Situation situation = CrawlStartDecision::situationForProject(project, &waiting);
    if (situation == Situation::Fresh)
        return Choice::Start;
    const bool terminal = isatty(STDIN_FILENO) == 1;
    if (situation == Situation::Finished) {
        if (wantRestart)
            return Choice::Restart;
        if (wantContinue) {
            *status = failWith(ExitUsage, QStringLiteral("the last crawl of '%1' finished: nothing waits in its queue; "
                                                         "use --restart to crawl it again from scratch")
                                              .arg(project->name()));
            return Choice::Decline;
        }
        if (terminal) {
            const QString answer = askOnTerminal(QStringLiteral("'%1' was crawled already and nothing waits in its queue. "
                                                                "Restart from scratch? [y/N]")
                                                     .arg(project->name()));
            if (answer == QLatin1String("y") || answer == QLatin1String("yes"))
                return Choice::Restart;
            *status = failWith(ExitFailure, QStringLiteral("crawl not started"));
            return Choice::Decline;
        }
        *status = failWith(ExitUsage, QStringLiteral("'%1' was crawled already and nothing waits in its queue; "
                                                     "use --restart to crawl it again from scratch")
                                          .arg(project->name()));
        return Choice::Decline;
    }
    if (wantContinue)
        return Choice::Continue;
    if (wantRestart)
        return Choice::Restart;
    if (terminal) {
        const QString answer = askOnTerminal(QStringLiteral("'%1' has %2 URLs waiting from an earlier crawl. "
                                                            "[c]ontinue, [r]estart from scratch or [q]uit?")
                                                 .arg(project->name())
                                                 .arg(waiting));
        if (answer == QLatin1String("c") || answer == QLatin1String("continue"))
            return Choice::Continue;
        if (answer == QLatin1String("r") || answer == QLatin1String("restart"))
            return Choice::Restart;
        *status = failWith(ExitFailure, QStringLiteral("crawl not started"));
        return Choice::Decline;
    }
    *status = failWith(ExitUsage, QStringLiteral("'%1' has %2 URLs waiting from an earlier crawl; "
                                                 "use --continue to go on with them or --restart to start from scratch")
                                      .arg(project->name())
                                      .arg(waiting));
    return Choice::Decline;
}

int finalStatus(const ProjectPtr& project, const ReportCommands::CrawlRunFigures& figures,
                const QString& databaseError)
{
    if (!databaseError.isEmpty()) {
        const QString file = project->full_sqlite_name();
        QStorageInfo disk(QFileInfo(file).absolutePath());
        const bool full = disk.isValid() && disk.bytesAvailable() < 1024 * 1024;
        return failWith(ExitFailure,
                        QStringLiteral("the crawl database %1 could not be written (%2)%3; the crawl stopped, "
                                       "'crawl %4 --continue' goes on from the last page saved")
                            .arg(file, databaseError, full ? QStringLiteral(": the disk is full") : QString(), project->name()));
    }
    if (figures.stopped)
        return ExitInterrupted;
    if (!figures.endError.isEmpty()) {
        std::fprintf(stderr, "quillmere: %s\n", qPrintable(figures.endError));
        return ExitFirstUrlError;
    }
    return ExitOk;
}
} // namespace

QList<CommandSpec> specs()
{
    return {
        {QStringLiteral("crawl"), QStringLiteral("crawl NAME [--continue|--restart] [--timeout S] [--fail-on-broken] [--parallel N] [--max-rate R]"),
         QStringLiteral("crawl a project's site, then print the report"),
         QStringLiteral("A project crawled before has pages: --continue goes on with the URLs still waiting, --restart\n"
                        "empties the database and starts again (on a terminal without either, you are asked).\n"
                        "  --timeout S  seconds a transfer may stay silent before it fails (default 1000)\n"
                        "  --fail-on-broken  exit with status 4 when the crawl found broken internal links (links\n"
                        "               whose target answered 4xx or 5xx or could not be fetched; see 'broken NAME')\n"
                        "  --parallel N requests in flight at most (default 4): the next pages of the queue are\n"
                        "               fetched while one is analysed; pages are still analysed in queue order\n"
                        "               and the database is the same; 1 asks for one page at a time\n"
                        "  --max-rate R requests per second at most (default: no cap)\n"
                        "A busy server's 429 or 503 with a Retry-After of up to 60 s is waited for and asked\n"
                        "again (3 times at most).\n"
                        "Ctrl-C stops within a second; a page still downloading stays in the queue, nothing is\n"
                        "lost and the crawl can be continued.\n"
                        "Exit status: 0 done, 2 bad input, 3 the site's links do not match the project URL\n"
                        "(http/https or www.), 4 broken internal links (with --fail-on-broken), 6 another process\n"
                        "is crawling, vacuuming or deleting the project, 130 stopped.\n"),
         1, 1, {QStringLiteral("--timeout"), QStringLiteral("--parallel"), QStringLiteral("--max-rate")},
         {QStringLiteral("--continue"), QStringLiteral("--restart"), QStringLiteral("--fail-on-broken")}},
        {QStringLiteral("crawl-url"), QStringLiteral("crawl-url URL [--name NAME]"),
         QStringLiteral("make a project for URL and crawl it once, without limits and without the vacuum"),
         QStringLiteral("  --name NAME  the project's name (default: the URL's host)\n"), 1, 1, {QStringLiteral("--name")}, {}},
        {QStringLiteral("vacuum"), QStringLiteral("vacuum NAME"),
         QStringLiteral("take the links to non-HTML resources off the pages' links-sent counts (again)"), QString(), 1, 1,
         {}, {}},
    };
}

int crawlAndReport(const ProjectPtr& project, const CrawlSettings& settings)
{
    ReportCommands::CrawlRunFigures figures;
    QString databaseError;
    {
        OperationQueue queue;
        queue.setMaxConcurrentOperationCount(1);
        auto controller = std::make_shared<CliCrawlController>(project, &queue, true);
        controller->setSelf(controller);
        std::shared_ptr<DownloaderDelegate> delegate(controller, static_cast<DownloaderDelegate*>(controller.get()));
        auto operation = DownloaderOperationLibXML::initWithProject(project, delegate);
        settings.applyTo(*operation);
        controller->setStopFlag(operation->canContinueFlag(), &StopSignal::received);
        QEventLoop loop;
        controller->setFinishedHandler([&loop] { loop.quit(); });
        StopSignal::install(operation->canContinueFlag());
        queue.addOperation(operation);
        loop.exec();
        queue.waitUntilAllOperationsAreFinished();
        StopSignal::uninstall();
        controller->progress().finish();
        figures.pagesThisRun = controller->records().pagesStartedThisRun();
        figures.seconds = controller->crawlSeconds();
        figures.stopped = StopSignal::received();
        figures.endError = controller->endError();
        databaseError = operation->databaseError();
    }
    CrawlAudit::complete(project, &figures);
    ReportCommands::printCrawlReport(project, figures);
    return CrawlAudit::exitStatus(finalStatus(project, figures, databaseError), figures);
}

int runCrawl(CliContext& context)
{
    CrawlAudit::setFailOnBroken(context.command.flags.contains(QStringLiteral("--fail-on-broken")));
    CrawlSettings settings;
    if (context.command.values.contains(QStringLiteral("--timeout"))) {
        bool ok = false;
        settings.transferTimeout = context.command.values.value(QStringLiteral("--timeout")).toDouble(&ok);
        if (!ok || !(settings.transferTimeout > 0) || settings.transferTimeout > 1e6)
            return failWith(ExitUsage, QStringLiteral("--timeout wants a number of seconds above 0"));
    }
    QString why;
    if (!settings.parse(context.command.values.value(QStringLiteral("--parallel")),
                        context.command.values.value(QStringLiteral("--max-rate")), &why))
        return failWith(ExitUsage, why);
    int status = ExitOk;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Write, &status);
    if (!project)
        return status;
    const auto lock = ProjectLocking::take(project->name(), project->full_sqlite_name(), QStringLiteral("crawl"), &status);
    if (!lock)
        return status;
    const Choice choice = decide(context, project, &status);
    // The decision counts pages and queue entries: counts that failed must not lead to a
    // restart's deletes or to a fresh start over old pages.
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (!CrawlStartDecision::apply(choice, project))
        return status;
    return crawlAndReport(project, settings);
}

int runCrawlURL(CliContext& context)
{
    QString url = context.command.operands.value(0).trimmed();
    QString why;
    if (!ProjectCommands::isCrawlableURL(url, &why))
        return failWith(ExitUsage, why);
    QString name = context.command.values.value(QStringLiteral("--name"));
    if (name.isEmpty())
        name = QUrl(url).host();
    if (!ProjectCommands::isUsableProjectName(name, &why))
        return failWith(ExitUsage, why);
    DataModelManager* manager = context.appDelegate->dataModelManager();
    if (!manager->managedObjectContext())
        return ExitUsage;
    if (Project::getProjectWithName(name))
        return failWith(ExitUsage, QStringLiteral("a project named '%1' exists already; choose another with --name").arg(name));
    int status = ExitOk;
    const auto lock = ProjectLocking::take(name, manager->fullSQLite3FileNameWithProjectName(name + QStringLiteral(".sqlite")),
                                           QStringLiteral("crawl-url"), &status);
    if (!lock)
        return status;

    ReportCommands::CrawlRunFigures figures;
    ProjectPtr project;
    {
        auto driver = std::make_shared<DownloaderCmdLineTestController>();
        driver->launchTestWithURL(url, name);
        project = driver->project();
        if (!project || !driver->downloaderOperation())
            return failWith(ExitUsage, QStringLiteral("cannot create the project '%1'").arg(name));
        QEventLoop loop;
        QElapsedTimer timer;
        timer.start();
        driver->downloaderOperation()->setCompletionBlock([&loop] { MainThread::post([&loop] { loop.quit(); }); });
        StopSignal::install(driver->downloaderOperation()->canContinueFlag());
        loop.exec();
        driver->operationsQueue()->waitUntilAllOperationsAreFinished();
        StopSignal::uninstall();
        figures.seconds = double(timer.nsecsElapsed()) / 1e9;
        figures.stopped = StopSignal::received();
        figures.pagesThisRun = qint32(QuillmereDownloaderQueue::countDoneDownloaderQueueForProject(project));
    }
    // This driver keeps no page count of its own: report what the queue shows.
    project->setPages_count(figures.pagesThisRun);
    manager->saveContext();
    CrawlAudit::complete(project, &figures);
    ReportCommands::printCrawlReport(project, figures);
    return figures.stopped ? ExitInterrupted : ExitOk;
}

int runVacuum(CliContext& context)
{
    int status = ExitOk;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), ProjectAccess::Need::Write, &status);
    if (!project)
        return status;
    const auto lock = ProjectLocking::take(project->name(), project->full_sqlite_name(), QStringLiteral("vacuum"), &status);
    if (!lock)
        return status;
    qint64 cleaned = 0;
    {
        OperationQueue queue;
        auto controller = std::make_shared<CliCrawlController>(project, &queue, false);
        controller->setSelf(controller);
        std::shared_ptr<VacuumCleanerDelegate> delegate(controller, static_cast<VacuumCleanerDelegate*>(controller.get()));
        QEventLoop loop;
        controller->setFinishedHandler([&loop] { loop.quit(); });
        auto operation = VacuumCleanerOperation::initWithProject(project, delegate);
        queue.addOperation(operation);
        loop.exec();
        queue.waitUntilAllOperationsAreFinished();
        controller->progress().finish();
        cleaned = QuillmerePage::getAllVacuumPagesForProject(project).size();
    }
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Write))
        return failed;
    printOut(QStringLiteral("Vacuumed '%1': %2 non-HTML pages taken off the links-sent counts of the pages linking to them\n")
                 .arg(project->name())
                 .arg(cleaned));
    return ExitOk;
}

} // namespace CrawlCommands
