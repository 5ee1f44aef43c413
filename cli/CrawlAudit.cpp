#include "cli/CrawlAudit.h"

#include "cli/CliContext.h"
#include "cli/CliText.h"
#include "crawler/StartPageDiagnosis.h"
#include "store/FetchLog.h"
#include "store/LinkRules.h"
#include "store/WebAudit.h"
#include "store/Project.h"

#include <cstdio>

namespace CrawlAudit {

namespace {
bool g_failOnBroken = false;
} // namespace

void setFailOnBroken(bool fail)
{
    g_failOnBroken = fail;
}

void complete(const ProjectPtr& project, const StartPageStop& stop, ReportCommands::CrawlRunFigures* figures)
{
    if (LinkRulesStore::of(project) == LinkRules::Web) {
        figures->webRules = true;
        figures->brokenLinks = WebAudit::countBrokenLinks(project);
        figures->brokenTargets = WebAudit::countBrokenTargets(project);
        figures->brokenFragments = WebAudit::countBrokenFragments(project);
        return;  // a web crawl lists every page it could not read: nothing else to explain
    }
    figures->brokenLinks = FetchLog::countBrokenLinks(project);
    figures->brokenTargets = FetchLog::countBrokenTargets(project);
    figures->misreadBroken = WebAudit::countClassicMisreadBroken(project);
    if (!figures->stopped)
        figures->whyNothing = whyNothingWasAnalysed(project, stop);
}

int exitStatus(const ProjectPtr& project, int status, const ReportCommands::CrawlRunFigures& figures)
{
    if (status != ExitOk || !g_failOnBroken)
        return status;
    if (figures.webRules) {
        // Pages, resources and external links alike; the start page among them.
        if (figures.brokenTargets == 0)
            return status;
        failWith(ExitBrokenLinks, CliText::tr("CliFailOnBroken").arg(figures.brokenLinks).arg(figures.brokenTargets));
        return ExitBrokenLinks;
    }
    // No page links to the start page: its failure counts for none of the links, yet the site
    // could not be checked at all.
    const FetchLogPtr start = FetchLog::getFetchLogWithURL(project->url(), project);
    if (start && start->isBroken()) {
        return failWith(ExitBrokenLinks,
                        CliText::tr("CliFailOnBrokenStartPage").arg(project->url(), start->statusText()));
    }
    if (figures.brokenLinks == 0)
        return status;
    failWith(ExitBrokenLinks, CliText::tr("CliFailOnBroken").arg(figures.brokenLinks).arg(figures.brokenTargets));
    return ExitBrokenLinks;
}

QString whyNothingWasAnalysed(const ProjectPtr& project, const StartPageStop& stop)
{
    if (!StartPageDiagnosis::crawlAnalysedNothing(project))
        return QString();
    const StartPageDiagnosis::Result d = StartPageDiagnosis::diagnose(project, stop);
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
