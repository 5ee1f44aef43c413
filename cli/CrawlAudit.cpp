#include "cli/CrawlAudit.h"

#include "cli/CliContext.h"
#include "cli/CliText.h"
#include "store/FetchLog.h"
#include "store/Project.h"
#include "store/StartPageDiagnosis.h"

#include <cstdio>

namespace CrawlAudit {

namespace {
bool g_failOnBroken = false;
// The start page is asked for once more only to read its tags; it answered moments ago.
constexpr double kDiagnosisTimeoutSeconds = 30;
} // namespace

void setFailOnBroken(bool fail)
{
    g_failOnBroken = fail;
}

void complete(const ProjectPtr& project, ReportCommands::CrawlRunFigures* figures)
{
    figures->brokenLinks = FetchLog::countBrokenLinks(project);
    figures->brokenTargets = FetchLog::countBrokenTargets(project);
    if (!figures->stopped)
        figures->whyNothing = whyNothingWasAnalysed(project);
}

int exitStatus(int status, const ReportCommands::CrawlRunFigures& figures)
{
    if (status != ExitOk || !g_failOnBroken || figures.brokenLinks == 0)
        return status;
    failWith(ExitBrokenLinks, CliText::tr("CliFailOnBroken").arg(figures.brokenLinks).arg(figures.brokenTargets));
    return ExitBrokenLinks;
}

QString whyNothingWasAnalysed(const ProjectPtr& project)
{
    if (!StartPageDiagnosis::crawlAnalysedNothing(project))
        return QString();
    const StartPageDiagnosis::Result d = StartPageDiagnosis::diagnose(project, kDiagnosisTimeoutSeconds);
    const QString url = d.startUrl;
    QString why;
    switch (d.reason) {
    case StartPageDiagnosis::Reason::Analysed:
        return QString();
    case StartPageDiagnosis::Reason::NotFetched:
        why = CliText::tr("CliWhyNotFetched").arg(url, project->name());
        break;
    case StartPageDiagnosis::Reason::TransferFailed:
        why = CliText::tr("CliWhyTransferFailed").arg(url, d.detail);
        break;
    case StartPageDiagnosis::Reason::ErrorStatus:
        why = CliText::tr("CliWhyErrorStatus").arg(url).arg(d.status);
        break;
    case StartPageDiagnosis::Reason::RedirectedToOtherHost:
        why = CliText::tr("CliWhyRedirected").arg(url, d.detail);
        break;
    case StartPageDiagnosis::Reason::NotHtml:
        why = CliText::tr("CliWhyNotHtml").arg(url, d.detail.isEmpty() ? QStringLiteral("?") : d.detail);
        break;
    case StartPageDiagnosis::Reason::TooLarge:
        why = CliText::tr("CliWhyTooLarge").arg(url);
        break;
    case StartPageDiagnosis::Reason::Canonical:
        why = CliText::tr("CliWhyCanonical").arg(url, d.detail);
        break;
    case StartPageDiagnosis::Reason::NoIndexNoFollow:
        why = CliText::tr("CliWhyNoIndexNoFollow").arg(url);
        break;
    case StartPageDiagnosis::Reason::NoIndexOrCanonical:
        why = CliText::tr("CliWhyNoIndexOrCanonical").arg(url);
        break;
    case StartPageDiagnosis::Reason::NotParsed:
        why = CliText::tr("CliWhyNotParsed").arg(url);
        break;
    }
    return CliText::tr("CliWhyNothingTitle") + QLatin1Char('\n') + why;
}

} // namespace CrawlAudit
