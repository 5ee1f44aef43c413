#include "store/LinkRules.h"

#include "store/Project.h"
#include "store/WebStore.h"

QString LinkRulesStore::nameOf(LinkRules rules)
{
    return rules == LinkRules::Web ? QStringLiteral("web") : QStringLiteral("classic");
}

std::optional<LinkRules> LinkRulesStore::fromName(const QString& name)
{
    const QString word = name.trimmed().toLower();
    if (word == QLatin1String("classic"))
        return LinkRules::Classic;
    if (word == QLatin1String("web"))
        return LinkRules::Web;
    return std::nullopt;
}

LinkRules LinkRulesStore::of(sqlite3* db)
{
    return WebStore::hasTables(db) ? LinkRules::Web : LinkRules::Classic;
}

LinkRules LinkRulesStore::of(const std::shared_ptr<Project>& project)
{
    return project ? of(project->sqlite3Database()) : LinkRules::Classic;
}

bool LinkRulesStore::makeWeb(sqlite3* db)
{
    return WebStore::createTables(db);
}
