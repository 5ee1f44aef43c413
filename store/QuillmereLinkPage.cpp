#include "store/QuillmereLinkPage.h"

#include "base/DebugTrace.h"
#include "store/QuillmereLink.h"
#include "store/QuillmerePage.h"
#include "store/RecordStatement.h"

using namespace RecordStatement;

namespace {

const char* const kGetSourcesLinks =
    "select L.idt_page,L.idt_source,L.anchor,L.counter,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,"
    "P.is_canonical,P.in_link_count,P.out_link_count,P.depth,P.weight from Links L,Page P where L.idt_page = ? and "
    "L.idt_source = P.idt order by counter";

const char* const kCountSourcesLinks =
    "select count(*) from Links L,Page P where L.idt_page = ? and L.idt_source = P.idt";

bool forEachOfIdentifier(qint64 identifier, const ProjectPtr& project,
                         const std::function<void(const QuillmereLinkPage&)>& visit)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetSourcesLinks, &stmt)) {
        DebugTrace("getSourcesLinksFromPage:forProject: Error::%s", sqlite3_errmsg(db));
        return false;
    }
    bindInt(stmt, 1, identifier);
    while (nextRow(stmt, project)) {
        visit(QuillmereLinkPage(QuillmereLinkPage::pageFromStatement(stmt, project),
                                QuillmereLinkPage::linkFromStatement(stmt, project)));
    }
    finish(stmt);
    return true;
}

QList<QuillmereLinkPagePtr> sourcesLinksOfIdentifier(qint64 identifier, const ProjectPtr& project)
{
    QList<QuillmereLinkPagePtr> pairs;
    forEachOfIdentifier(identifier, project,
                        [&pairs](const QuillmereLinkPage& pair) { pairs.append(std::make_shared<QuillmereLinkPage>(pair)); });
    return pairs;
}

} // namespace

QuillmereLinkPage::QuillmereLinkPage(const std::shared_ptr<QuillmerePage>& quillmerePage,
                                     const std::shared_ptr<QuillmereLink>& quillmereLink)
    : quillmerePage_(quillmerePage)
    , quillmereLink_(quillmereLink)
{
}

QList<QuillmereLinkPagePtr> QuillmereLinkPage::getSourcesLinksFromPage(const QuillmerePagePtr& target,
                                                                       const ProjectPtr& project)
{
    // A missing page record binds as identifier 0, which no row has.
    return sourcesLinksOfIdentifier(target ? target->idt() : 0, project);
}

QList<QuillmereLinkPagePtr> QuillmereLinkPage::getSourcesLinksFromPage(const QuillmerePage& target,
                                                                       const ProjectPtr& project)
{
    return sourcesLinksOfIdentifier(target.idt(), project);
}

bool QuillmereLinkPage::forEachSourceLink(const QuillmerePage& target, const ProjectPtr& project,
                                          const std::function<void(const QuillmereLinkPage&)>& visit)
{
    return forEachOfIdentifier(target.idt(), project, visit);
}

qint64 QuillmereLinkPage::countSourceLinks(const QuillmerePage& target, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCountSourcesLinks, &stmt)) {
        DebugTrace("countSourceLinks Error::%s", sqlite3_errmsg(db));
        return 0;
    }
    bindInt(stmt, 1, target.idt());
    return countValue(stmt, project);
}

std::shared_ptr<QuillmereLink> QuillmereLinkPage::linkFromStatement(sqlite3_stmt* statement,
                                                                    const ProjectPtr& project)
{
    return QuillmereLink::linkFromStatement(statement, project);
}

QuillmerePagePtr QuillmereLinkPage::pageFromStatement(sqlite3_stmt* statement, const ProjectPtr& project)
{
    return std::make_shared<QuillmerePage>(columnInt(statement, 1), columnText(statement, 4),
                                           columnText(statement, 5), columnText(statement, 6),
                                           columnText(statement, 7), columnInt(statement, 8),
                                           columnInt(statement, 9), columnInt(statement, 10),
                                           columnInt(statement, 11), columnInt(statement, 12),
                                           columnInt(statement, 13), sqlite3_column_double(statement, 14), project);
}
