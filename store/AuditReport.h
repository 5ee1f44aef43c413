#pragma once

#include "store/AuditListing.h"
#include "store/WebAudit.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class Project;

// The flat rows of the audit's listings, as both front ends show and export them: the field
// keys (CSV header, JSON names), the keys of the column titles in the string tables, and one
// row of values per link. Broken links of a web-rules project come from its own tables and
// have two more columns (kind, tag).
class AuditReport {
public:
    enum class Kind { Broken, Redirects, External, Resources, Fragments, Robots };

    static QStringList keys(Kind kind, bool web);
    static QList<const char*> headerKeys(Kind kind, bool web);
    static QList<QVariant> values(Kind kind, const AuditListing::Row& row);
    static QList<QVariant> values(Kind kind, const WebAudit::Row& row);

    // Every row of the listing, read with the query the reports use; false when it could not
    // be read. Broken follows the project's link rules.
    static bool forEachRow(Kind kind, const std::shared_ptr<Project>& project,
                           const std::function<void(const QList<QVariant>&)>& row);

    // "URL (301) -> URL (200)": the hops of a redirect, then where it ended.
    static QString chainText(const FetchLogPtr& fetch);
};
