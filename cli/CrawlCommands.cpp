#include "cli/CrawlCommands.h"

#include "cli/CliCrawlController.h"
#include "cli/CliText.h"
#include "cli/CrawlAudit.h"
#include "cli/ProjectAccess.h"
#include "cli/ProjectCommands.h"
#include "cli/ProjectLocking.h"
#include "cli/ReportCommands.h"
#include "cli/StopSignal.h"
#include "cli/WebOptions.h"
#include "crawler/CrawlOperationFactory.h"
#include "crawler/CrawlAndVacuum.h"
#include "crawler/CrawlStartDecision.h"
#include "crawler/DownloaderCmdLineTestController.h"
#include "crawler/DownloaderOperationLibXML.h"
#include "crawler/MainThread.h"
#include "crawler/OperationQueue.h"
#include "crawler/VacuumCleanerOperation.h"
#include "fetch/SynchronizedWebCall.h"
#include "store/DataModelManager.h"
#include "store/LinkRules.h"
#include "store/Project.h"
#include "store/ProjectCatalog.h"
#include "store/ProjectLock.h"
#include "store/ProjectRules.h"
#include "store/StringTable.h"
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
    printErr(question, " ");
    std::fflush(stderr);
    QTextStream in(stdin);
    return in.readLine().trimmed().toLower();
}

// Whether an answer is one of the words a key lists ("y,yes"): those of the language asked in.
bool answerIs(const QString& answer, const char* key)
{
    return !answer.isEmpty() && CliText::tr(key).split(QLatin1Char(',')).contains(answer);
}

// The window's start alerts, as flags or, on a terminal, as a question.
Choice decide(CliContext& context, const ProjectPtr& project, int* status)
{
    const bool wantContinue = context.command.flags.contains(QStringLiteral("--continue"));
    const bool wantRestart = context.command.flags.contains(QStringLiteral("--restart"));
    *status = ExitOk;
    if (wantContinue && wantRestart) {
        *status = failWith(ExitUsage, CliText::tr("CliErrorContinueRestart"));
        return Choice::Decline;
    }
    qint64 waiting = 0;
    const Situation situation = CrawlStartDecision::situationForProject(project, &waiting);
    // A database made afresh for --restart may sit under the counts of the crawl it replaces.
    if (situation == Situation::Fresh)
        return wantRestart ? Choice::Restart : Choice::Start;
    const bool terminal = isatty(STDIN_FILENO) == 1;
    if (situation == Situation::Finished) {
        if (wantRestart)
            return Choice::Restart;
        if (wantContinue) {
            *status = failWith(ExitUsage, CliText::tr("CliErrorFinishedContinue").arg(project->name()));
            return Choice::Decline;
        }
        if (terminal) {
            const QString answer = askOnTerminal(CliText::tr("CliAskRestart").arg(project->name()));
            if (answerIs(answer, "CliAnswersYes"))
                return Choice::Restart;
            *status = failWith(ExitFailure, CliText::tr("CliCrawlNotStarted"));
            return Choice::Decline;
        }
        *status = failWith(ExitUsage, CliText::tr("CliErrorAlreadyCrawled").arg(project->name()));
        return Choice::Decline;
    }
    if (wantContinue)
        return Choice::Continue;
    if (wantRestart)
        return Choice::Restart;
    if (terminal) {
        const QString answer = askOnTerminal(CliText::tr("CliAskWaiting")
                                                 .arg(project->name())
                                                 .arg(waiting));
        if (answerIs(answer, "CliAnswersContinue"))
            return Choice::Continue;
        if (answerIs(answer, "CliAnswersRestart"))
            return Choice::Restart;
        *status = failWith(ExitFailure, CliText::tr("CliCrawlNotStarted"));
        return Choice::Decline;
    }
    *status = failWith(ExitUsage, CliText::tr("CliErrorWaiting")
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
                        CliText::tr("CliErrorCrawlDatabaseNotWritten")
                            .arg(file, databaseError, full ? CliText::tr("CliDiskFull") : QString(), project->name()));
    }
    if (figures.stopped)
        return ExitInterrupted;
    if (!figures.endError.isEmpty()) {
        failWith(ExitFirstUrlError, figures.endError);
        return ExitFirstUrlError;
    }
    return ExitOk;
}
} // namespace

namespace {
bool parseMaxTransferTime(const CliContext& context, CrawlSettings* settings)
{
    const QString key = QStringLiteral("--max-transfer-time");
    return !context.command.values.contains(key)
           || CrawlSettings::parseNumber(context.command.values.value(key), CrawlSettings::kMinimumTransferTime,
                                         CrawlSettings::kMaximumTransferTime, &settings->maxTransferTime);
}
} // namespace

QList<CommandSpec> specs()
{
    return {
        {QStringLiteral("crawl"), QStringLiteral("crawl NAME [--continue|--restart] [--timeout S] [--max-transfer-time S] [--fail-on-broken] [--parallel N] [--max-rate R]\n"
                                                 "        [web rules: --no-external --ignore-robots --include RE --exclude RE --user-agent UA\n"
                                                 "         --header \"N: v\" --max-page-size BYTES --external-timeout S --per-host N]"),
         CliText::tr("CliCrawlSummary"), CliText::tr("CliCrawlDetails") + WebOptions::crawlHelp(),
         1, 1, QStringList{QStringLiteral("--timeout"), QStringLiteral("--max-transfer-time"), QStringLiteral("--parallel"), QStringLiteral("--max-rate")} + WebOptions::crawlValueOptions(),
         QStringList{QStringLiteral("--continue"), QStringLiteral("--restart"), QStringLiteral("--fail-on-broken")} + WebOptions::crawlFlagOptions()},
        {QStringLiteral("crawl-url"), QStringLiteral("crawl-url URL [--name NAME] [--max-transfer-time S] [--rules classic|web] [web rules' options of crawl]"),
         CliText::tr("CliCrawlURLSummary"), CliText::tr("CliCrawlURLDetails") + WebOptions::rulesHelp() + WebOptions::crawlHelp(), 1, 1,
         QStringList{QStringLiteral("--name"), QStringLiteral("--max-transfer-time"), QStringLiteral("--rules")} + WebOptions::crawlValueOptions(),
         WebOptions::crawlFlagOptions()},
        {QStringLiteral("vacuum"), QStringLiteral("vacuum NAME"),
         CliText::tr("CliVacuumSummary"), QString(), 1, 1,
         {}, {}},
    };
}

int crawlAndReport(const ProjectPtr& project, const CrawlSettings& settings, const WebCrawlOptions& webOptions)
{
    ReportCommands::CrawlRunFigures figures;
    QString databaseError;
    StartPageStop startPageStop;
    {
        OperationQueue queue;
        queue.setMaxConcurrentOperationCount(1);
        auto controller = std::make_shared<CliCrawlController>(project);
        std::shared_ptr<DownloaderDelegate> delegate(controller, static_cast<DownloaderDelegate*>(controller.get()));
        std::shared_ptr<VacuumCleanerDelegate> cleaner(controller, static_cast<VacuumCleanerDelegate*>(controller.get()));
        auto operation = CrawlOperationFactory::operationForProject(project, delegate);
        settings.applyTo(*operation);
        WebOptions::applyTo(*operation, webOptions);
        QEventLoop loop;
        StopSignal::install(operation->canContinueFlag());
        CrawlAndVacuum::start(&queue, operation, project, cleaner, {}, [&loop] { loop.quit(); });
        loop.exec();
        queue.waitUntilAllOperationsAreFinished();
        StopSignal::uninstall();
        controller->progress().finish();
        figures.pagesThisRun = controller->records().pagesStartedThisRun();
        figures.seconds = controller->crawlSeconds();
        figures.stopped = StopSignal::received();
        figures.endError = controller->endError();
        databaseError = operation->databaseError();
        startPageStop = operation->startPageStop();
    }
    CrawlAudit::complete(project, startPageStop, &figures);
    ReportCommands::printCrawlReport(project, figures);
    return CrawlAudit::exitStatus(project, finalStatus(project, figures, databaseError), figures);
}

int runCrawl(CliContext& context)
{
    CrawlAudit::setFailOnBroken(context.command.flags.contains(QStringLiteral("--fail-on-broken")));
    CrawlSettings settings;
    if (context.command.values.contains(QStringLiteral("--timeout"))
        && !CrawlSettings::parseNumber(context.command.values.value(QStringLiteral("--timeout")),
                                       CrawlSettings::kMinimumTimeout, CrawlSettings::kMaximumTimeout,
                                       &settings.transferTimeout))
        return failWith(ExitUsage, CliText::tr("CliErrorBadTimeout"));
    if (!parseMaxTransferTime(context, &settings))
        return failWith(ExitUsage, CliText::tr("CliErrorBadMaxTransferTime"));
    // The settings judge the values; the message is said in the command line's language.
    // An option given with an empty value is a value that makes no sense, not an absent one.
    auto given = [&context](const QString& key) {
        const QString value = context.command.values.value(key);
        return context.command.values.contains(key) && value.isEmpty() ? QStringLiteral(" ") : value;
    };
    const QString parallel = given(QStringLiteral("--parallel"));
    const QString maxRate = given(QStringLiteral("--max-rate"));
    QString why;
    if (!CrawlSettings().parse(parallel, QString(), &why))
        return failWith(ExitUsage, CliText::tr("CliErrorBadParallel"));
    if (!settings.parse(parallel, maxRate, &why))
        return failWith(ExitUsage, CliText::tr("CliErrorBadMaxRate"));
    int status = ExitOk;
    WebCrawlOptions webOptions;
    bool webOptionsGiven = false;
    if (!WebOptions::crawlOptions(context, &webOptions, &webOptionsGiven, &status))
        return status;
    const auto need = context.command.flags.contains(QStringLiteral("--restart")) ? ProjectAccess::Need::Restart
                                                                                   : ProjectAccess::Need::Write;
    ProjectPtr project = ProjectAccess::open(context, context.command.operands.value(0), need, &status);
    if (!project)
        return status;
    const auto lock = ProjectLocking::take(project->name(), project->full_sqlite_name(), QStringLiteral("crawl"), &status);
    if (!lock)
        return status;
    if (!WebOptions::acceptedBy(project, context, webOptionsGiven, &status))
        return status;
    const Choice choice = decide(context, project, &status);
    // The decision counts pages and queue entries: counts that failed must not lead to a
    // restart's deletes or to a fresh start over old pages.
    if (const int failed = ProjectAccess::databaseFailureStatus(project, ProjectAccess::Need::Read))
        return failed;
    if (!CrawlStartDecision::apply(choice, project))
        return status;
    return crawlAndReport(project, settings, webOptions);
}

int runCrawlURL(CliContext& context)
{
    const QString typed = context.command.operands.value(0).trimmed();
    const QString normal = ProjectRules::normalForm(typed);
    const QString url = normal.isNull() ? typed : normal;
    QString why;
    if (!ProjectCommands::isCrawlableURL(url, &why))
        return failWith(ExitUsage, why);
    CrawlSettings settings;
    if (!parseMaxTransferTime(context, &settings))
        return failWith(ExitUsage, CliText::tr("CliErrorBadMaxTransferTime"));
    int status = ExitOk;
    LinkRules rules = LinkRules::Classic;
    if (!WebOptions::rules(context, &rules, &status))
        return status;
    WebCrawlOptions webOptions;
    bool webOptionsGiven = false;
    if (!WebOptions::crawlOptions(context, &webOptions, &webOptionsGiven, &status))
        return status;
    if (webOptionsGiven && rules != LinkRules::Web)
        return failWith(ExitUsage, CliText::tr("CliErrorWebOptionsNeedWebRules"));
    QString name = context.command.values.value(QStringLiteral("--name"));
    if (name.isEmpty())
        name = QUrl(url).host();
    if (!ProjectCommands::isUsableProjectName(name, &why))
        return failWith(ExitUsage, why);
    DataModelManager* manager = context.appDelegate->dataModelManager();
    // The project is saved before its crawl begins: a crawl killed outright leaves a project
    // to continue, not a database that no project names.
    ProjectCatalog catalog(*manager, StringTable::forLanguage(CliText::language()));
    const ProjectCatalog::Result created = catalog.create(name, url, -1, -1, QStringLiteral("quillmere crawl-url"), {}, rules);
    switch (created.outcome) {
    case ProjectCatalog::Outcome::Done:
        break;
    case ProjectCatalog::Outcome::StoreUnavailable:
        return ExitUsage;
    case ProjectCatalog::Outcome::Exists:
        return failWith(ExitUsage, CliText::tr("CliErrorProjectExistsChooseName").arg(name));
    case ProjectCatalog::Outcome::InUse:
        return failWith(created.lockRefusal && created.lockRefusal->inUse() ? ExitProjectInUse : ExitUsage, created.why);
    default:
        return failWith(ExitUsage, created.why);
    }
    if (url != typed)
        printErr(CliText::tr("CliNewURLStoredAs").arg(typed, url), "");

    ReportCommands::CrawlRunFigures figures;
    ProjectPtr project;
    StartPageStop startPageStop;
    {
        auto driver = std::make_shared<DownloaderCmdLineTestController>();
        driver->launchTestWithProject(created.project, [&settings, &webOptions](DownloaderOperationLibXML& operation) {
            operation.syncWebCall()->setMaxTransferInterval(settings.maxTransferTime);
            WebOptions::applyTo(operation, webOptions);
        });
        project = driver->project();
        if (!project || !driver->downloaderOperation())
            return failWith(ExitUsage, CliText::tr("CliErrorCannotCreateProject").arg(name));
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
        startPageStop = driver->downloaderOperation()->startPageStop();
    }
    // This driver keeps no page count of its own: report what the queue shows.
    project->setPages_count(figures.pagesThisRun);
    manager->saveContext();
    CrawlAudit::complete(project, startPageStop, &figures);
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
    if (LinkRulesStore::of(project) == LinkRules::Web) {
        printOut(CliText::tr("CliVacuumWeb").arg(project->name()));
        return ExitOk;
    }
    qint64 cleaned = 0;
    {
        OperationQueue queue;
        auto controller = std::make_shared<CliCrawlController>(project);
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
    printOut(CliText::tr("CliVacuumed")
                 .arg(project->name())
                 .arg(cleaned));
    return ExitOk;
}

} // namespace CrawlCommands
