#include "store/PageDetails.h"

#include "base/DebugTrace.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <sqlite3.h>

using namespace RecordStatement;

FetchLogPtr PageDetails::fetchOf(const QuillmerePage& page, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    if (!db || !FetchLog::hasTable(db))
        return nullptr;
    return FetchLog::getFetchLogWithURL(page.url(), project);
}

QList<PageDetails::OutgoingLink> PageDetails::outgoingLinks(const QuillmerePage& page, const ProjectPtr& project)
{
    QList<OutgoingLink> links;
    sqlite3* db = databaseOf(project);
    if (!db)
        return links;
    // Page columns in table order (pageFromStatement), then the anchor, then the fetch.
    const QString sql = QStringLiteral("select T.idt,T.path,T.page,T.title,T.url,T.is_no_index,T.is_no_follow,"
                                       "T.is_canonical,T.in_link_count,T.out_link_count,T.depth,T.weight,L.anchor,")
                        + FetchLog::columnsOfF() + QStringLiteral(" from Links L join Page T on T.idt = L.idt_page left join ")
                        + FetchLog::tableOrEmpty(db)
                        + QStringLiteral(" F on F.url = T.url where L.idt_source = ? order by L.rowid");
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, text.constData(), &stmt)) {
        DebugTrace("PageDetails outgoingLinks Error::%s", sqlite3_errmsg(db));
        return links;
    }
    bindInt(stmt, 1, page.idt());
    while (nextRow(stmt, project)) {
        OutgoingLink link;
        link.target = QuillmerePage::pageFromStatement(stmt, project);
        link.anchor = columnText(stmt, 12);
        if (sqlite3_column_type(stmt, 13) != SQLITE_NULL)
            link.fetch = FetchLog::fetchLogFromStatement(stmt, 13);
        links.append(link);
    }
    finish(stmt);
    return links;
}
