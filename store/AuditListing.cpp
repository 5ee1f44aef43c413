#include "store/AuditListing.h"

#include "base/DebugTrace.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <sqlite3.h>

using namespace RecordStatement;

bool AuditListing::forEach(Kind kind, const ProjectPtr& project, const std::function<void(const Row&)>& row)
{
    sqlite3* db = databaseOf(project);
    const QString condition = kind == Kind::Broken ? FetchLog::brokenCondition() : QStringLiteral("F.redirect_count > 0");
    // Links whose source page is gone are left out, as in the links list. The links are
    // reached from the few listed targets through the target index: a join with a subquery
    // of every link was made into a temporary table of all of them (minutes at millions).
    // The links of a target come in the order that join gave them: by counter, then anchor,
    // then source URL, then as recorded.
    const QString sql = QStringLiteral("select ") + FetchLog::columnsOfF()
                        + QStringLiteral(",S.url,L.anchor from ") + FetchLog::tableOrEmpty(db)
                        + QStringLiteral(" F left join Page T on T.url = F.url left join Links L on L.idt_page = T.idt"
                                         " and exists (select 1 from Page P where P.idt = L.idt_source)"
                                         " left join Page S on S.idt = L.idt_source where ")
                        + condition
                        + QStringLiteral(" and (T.idt is not null or F.url = ?) order by F.url,L.counter,L.anchor,S.url,L.rowid");
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, text.constData(), &stmt)) {
        DebugTrace("AuditListing forEach Error::%s", sqlite3_errmsg(db));
        return false;
    }
    bindText(stmt, 1, project->url());
    FetchLogPtr current;
    while (nextRow(stmt, project)) {
        const QString url = columnText(stmt, 0);
        if (!current || current->url() != url)
            current = FetchLog::fetchLogFromStatement(stmt, 0);
        row(Row{current, columnText(stmt, 8), columnText(stmt, 9)});
    }
    finish(stmt);
    return true;
}
