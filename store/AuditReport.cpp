#include "store/AuditReport.h"

#include "store/LinkRules.h"
#include "store/Project.h"

QString AuditReport::chainText(const FetchLogPtr& fetch)
{
    QStringList hops;
    for (const auto& hop : fetch->redirectChain())
        hops << QStringLiteral("%1 (%2)").arg(hop.url).arg(hop.status);
    hops << QStringLiteral("%1 (%2)").arg(fetch->finalUrl(), fetch->statusText());
    return hops.join(QStringLiteral(" -> "));
}

QStringList AuditReport::keys(Kind kind, bool web)
{
    switch (kind) {
    case Kind::Broken:
        if (web)
            return {QStringLiteral("url"), QStringLiteral("status"), QStringLiteral("sourceUrl"), QStringLiteral("anchor"),
                    QStringLiteral("kind"), QStringLiteral("tag")};
        return {QStringLiteral("url"), QStringLiteral("status"), QStringLiteral("sourceUrl"), QStringLiteral("anchor")};
    case Kind::Redirects:
        return {QStringLiteral("url"),    QStringLiteral("hops"),      QStringLiteral("chain"), QStringLiteral("finalUrl"),
                QStringLiteral("status"), QStringLiteral("sourceUrl"), QStringLiteral("anchor")};
    case Kind::External:
    case Kind::Resources:
        return {QStringLiteral("url"), QStringLiteral("status"), QStringLiteral("verdict"), QStringLiteral("sourceUrl"),
                QStringLiteral("anchor"), QStringLiteral("tag")};
    case Kind::Fragments:
        return {QStringLiteral("url"), QStringLiteral("fragment"), QStringLiteral("sourceUrl"), QStringLiteral("anchor"),
                QStringLiteral("tag")};
    case Kind::Robots:
        return {QStringLiteral("url"), QStringLiteral("rule"), QStringLiteral("kind"), QStringLiteral("sourceUrl")};
    }
    return {};
}

QList<const char*> AuditReport::headerKeys(Kind kind, bool web)
{
    switch (kind) {
    case Kind::Broken:
        if (web)
            return {"CliColumnBrokenURL", "CliColumnStatus", "LinkViewColumnURL", "LinkViewColumnAnchor", "CliColumnKind",
                    "CliColumnTag"};
        return {"CliColumnBrokenURL", "CliColumnStatus", "LinkViewColumnURL", "LinkViewColumnAnchor"};
    case Kind::Redirects:
        return {"CliColumnRedirectURL", "CliColumnHops",     "CliColumnChain",      "CliColumnFinalURL",
                "CliColumnStatus",      "LinkViewColumnURL", "LinkViewColumnAnchor"};
    case Kind::External:
        return {"CliColumnExternalURL", "CliColumnStatus",      "CliColumnVerdict",
                "LinkViewColumnURL",    "LinkViewColumnAnchor", "CliColumnTag"};
    case Kind::Resources:
        return {"CliColumnTargetURL", "CliColumnStatus", "CliColumnVerdict", "LinkViewColumnURL", "LinkViewColumnAnchor",
                "CliColumnTag"};
    case Kind::Fragments:
        return {"CliColumnTargetURL", "CliColumnFragment", "LinkViewColumnURL", "LinkViewColumnAnchor", "CliColumnTag"};
    case Kind::Robots:
        return {"CliColumnTargetURL", "CliColumnRule", "CliColumnKind", "LinkViewColumnURL"};
    }
    return {};
}

QList<QVariant> AuditReport::values(Kind kind, const AuditListing::Row& row)
{
    if (kind == Kind::Redirects)
        return {row.fetch->url(), qint64(row.fetch->redirectChain().size()), chainText(row.fetch), row.fetch->finalUrl(),
                row.fetch->statusText(), row.sourceUrl, row.anchor};
    return {row.fetch->url(), row.fetch->statusText(), row.sourceUrl, row.anchor};
}

QList<QVariant> AuditReport::values(Kind kind, const WebAudit::Row& row)
{
    switch (kind) {
    case Kind::Broken:
        return {row.url, row.statusText(), row.sourceUrl, row.anchor, row.kind, row.tag};
    case Kind::External:
    case Kind::Resources:
        return {row.url, row.status > 0 ? QString::number(row.status) : row.failure, row.verdict, row.sourceUrl, row.anchor,
                row.tag};
    case Kind::Fragments:
        return {row.url, row.fragment, row.sourceUrl, row.anchor, row.tag};
    case Kind::Robots:
        return {row.url, row.rule, row.kind, row.sourceUrl};
    case Kind::Redirects:
        break;
    }
    return {};
}

bool AuditReport::forEachRow(Kind kind, const std::shared_ptr<Project>& project,
                             const std::function<void(const QList<QVariant>&)>& row)
{
    const bool web = LinkRulesStore::of(project) == LinkRules::Web;
    if (kind == Kind::Redirects || (kind == Kind::Broken && !web)) {
        const auto listing = kind == Kind::Redirects ? AuditListing::Kind::Redirects : AuditListing::Kind::Broken;
        return AuditListing::forEach(listing, project, [&](const AuditListing::Row& r) { row(values(kind, r)); });
    }
    if (!web)
        return true;  // the web rules' tables hold nothing for a classic project
    const WebAudit::Visit visit = [&](const WebAudit::Row& r) { row(values(kind, r)); };
    switch (kind) {
    case Kind::Broken: return WebAudit::forEachBroken(project, visit);
    case Kind::External: return WebAudit::forEachExternal(project, visit);
    case Kind::Resources: return WebAudit::forEachResource(project, visit);
    case Kind::Fragments: return WebAudit::forEachBrokenFragment(project, visit);
    case Kind::Robots: return WebAudit::forEachRobotsBlocked(project, visit);
    case Kind::Redirects: break;
    }
    return false;
}
