#include "store/AuditOverview.h"

#include "store/FetchLog.h"
#include "store/LinkRules.h"
#include "store/PageFilter.h"
#include "store/Project.h"
#include "store/ResponseCodes.h"
#include "store/WebAudit.h"

#include <QSet>

namespace {

// Distinct targets of a web listing (a target comes once per link to it).
qint64 targetsOf(bool (*listing)(const std::shared_ptr<Project>&, const WebAudit::Visit&),
                 const std::shared_ptr<Project>& project)
{
    QSet<QString> urls;
    listing(project, [&](const WebAudit::Row& row) { urls.insert(row.url); });
    return urls.size();
}

} // namespace

QList<AuditOverview::Finding> AuditOverview::findings(const std::shared_ptr<Project>& project)
{
    QList<Finding> list;
    if (!project)
        return list;
    using K = AuditReport::Kind;
    const bool web = LinkRulesStore::of(project) == LinkRules::Web;
    list.append({"AuditFindingPages", PageFilter::pages(PageFilter::All, project).size(), List::Documents, PageFilter::All});
    list.append({"AuditFindingErrors", ResponseCodes::errorCount(ResponseCodes::counts(project)), List::ResponseCodes});
    list.append({"AuditFindingBrokenLinks", web ? WebAudit::countBrokenLinks(project) : FetchLog::countBrokenLinks(project),
                 List::Report, 0, K::Broken});
    list.append({"AuditFindingBrokenTargets",
                 web ? WebAudit::countBrokenTargets(project) : FetchLog::countBrokenTargets(project), List::Report, 0,
                 K::Broken});
    QSet<QString> redirected;
    AuditListing::forEach(AuditListing::Kind::Redirects, project,
                          [&](const AuditListing::Row& row) { redirected.insert(row.fetch->url()); });
    list.append({"AuditFindingRedirects", redirected.size(), List::Report, 0, K::Redirects});
    static const struct {
        const char* key;
        qint32 filter;
    } filters[] = {{"AuditFinding404All", PageFilter::Error404AllTypes},
                   {"AuditFinding404Html", PageFilter::Error404OnlyHTML},
                   {"AuditFinding404Other", PageFilter::Error404NotHTML},
                   {"AuditFindingNoIndex", PageFilter::NoIndex},
                   {"AuditFindingCanonical", PageFilter::Canonical}};
    for (const auto& f : filters)
        list.append({f.key, PageFilter::pages(f.filter, project).size(), List::Documents, f.filter});
    if (web) {
        list.append({"AuditFindingExternal", targetsOf(&WebAudit::forEachExternal, project), List::Report, 0, K::External});
        list.append({"AuditFindingResources", targetsOf(&WebAudit::forEachResource, project), List::Report, 0, K::Resources});
        list.append({"AuditFindingRobots", targetsOf(&WebAudit::forEachRobotsBlocked, project), List::Report, 0, K::Robots});
        list.append({"AuditFindingFragments", WebAudit::countBrokenFragments(project), List::Report, 0, K::Fragments});
    }
    return list;
}
