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
    // Links whose source page is gone are left out, as in the links list.
    const QString sql = QStringLiteral("select ") + FetchLog::columnsOfF()
                        + QStringLiteral(",LS.source_url,LS.anchor from ") + FetchLog::tableOrEmpty(db)
                        + QStringLiteral(" F left join Page T on T.url = F.url left join (select L.idt_page,L.anchor,"
                                         "L.counter,S.url as source_url from Links L join Page S on S.idt = "
                                         "L.idt_source) LS on LS.idt_page = T.idt where ")
                        + condition + QStringLiteral(" and (T.idt is not null or F.url = ?) order by F.url,LS.counter");
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
