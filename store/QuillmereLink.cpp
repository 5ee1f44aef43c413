#include "store/QuillmereLink.h"

#include "base/DebugTrace.h"
#include "store/QuillmerePage.h"
#include "store/RecordStatement.h"

using namespace RecordStatement;

namespace {

const char* const kCreateLink = "insert into Links(idt_page,idt_source,anchor,counter) values(?,?,?,?)";
const char* const kRemoveAllLinksWithTarget = "delete from Links where idt_page = ?";
const char* const kGetSourcesLinks = "select idt_page,idt_source,anchor,counter from Links where idt_page = ?";

// A missing page record binds as identifier 0, which no row has.
qint64 identifierOf(const QuillmerePagePtr& page)
{
    return page ? page->idt() : 0;
}

} // namespace

QuillmereLink::QuillmereLink(qint64 pageIdentifier, qint64 sourceIdentifier, const QString& anchor, qint64 counter,
                             const std::shared_ptr<Project>& project)
    : idtPage_(pageIdentifier)
    , idtSource_(sourceIdentifier)
    , anchor_(anchor)
    , counter_(counter)
    , project_(project)
{
}

QuillmereLinkPtr QuillmereLink::createLinkWithPageSource(const QuillmerePagePtr& source,
                                                         const QuillmerePagePtr& target, const QString& anchor,
                                                         qint32 counter, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kCreateLink, &stmt)) {
        DebugTrace("createLinkWithPageSource Error::%s", sqlite3_errmsg(db));
        return nullptr;
    }
    bindInt(stmt, 1, identifierOf(target));
    bindInt(stmt, 2, identifierOf(source));
    bindText(stmt, 3, anchor);
    bindInt(stmt, 4, counter);
    QuillmereLinkPtr link;
    if (step(stmt, project) == SQLITE_DONE) {
        link = std::make_shared<QuillmereLink>(identifierOf(target), identifierOf(source), anchor, counter, project);
        link->setCachedPage(target);
        link->setCachedPageSource(source);
    }
    finish(stmt);
    return link;
}

void QuillmereLink::removeAllLinksWithTarget(const QuillmerePagePtr& target, const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kRemoveAllLinksWithTarget, &stmt)) {
        DebugTrace("removeAllLinksWithTarget Error::%s", sqlite3_errmsg(db));
        return;
    }
    bindInt(stmt, 1, identifierOf(target));
    step(stmt, project);
    finish(stmt);
}

QList<QuillmereLinkPtr> QuillmereLink::getSourcesLinksFromPage(const QuillmerePagePtr& target,
                                                               const ProjectPtr& project)
{
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, kGetSourcesLinks, &stmt)) {
        // The trace carries the name of an older, paged form of this operation.
        DebugTrace("getSourcesLinksFromPage:withStartLimit:endLimit:forProject: Error::%s", sqlite3_errmsg(db));
        return {};
    }
    bindInt(stmt, 1, identifierOf(target));
    QList<QuillmereLinkPtr> links;
    while (nextRow(stmt, project))
        links.append(linkFromStatement(stmt, project));
    finish(stmt);
    return links;
}

QuillmereLinkPtr QuillmereLink::linkFromStatement(sqlite3_stmt* statement, const ProjectPtr& project)
{
    return std::make_shared<QuillmereLink>(columnInt(statement, 0), columnInt(statement, 1),
                                           columnText(statement, 2), columnInt(statement, 3), project);
}

QuillmerePagePtr QuillmereLink::page()
{
    if (!cachedPage_)
        cachedPage_ = QuillmerePage::getPageFromIdentifier(idtSource_, project_.lock());
    return cachedPage_;
}

QuillmerePagePtr QuillmereLink::pageSource()
{
    if (!cachedPageSource_)
        cachedPageSource_ = QuillmerePage::getPageFromIdentifier(idtSource_, project_.lock());
    return cachedPageSource_;
}

QString QuillmereLink::description() const
{
    return QStringLiteral("QuillmereLink (idt_page::") + QString::number(idtPage_) +
           QStringLiteral(") (idt_source::") + QString::number(idtSource_) + QStringLiteral(") (anchor::") +
           describe(anchor_) + QStringLiteral(") (counter::") + QString::number(counter_) + QStringLiteral(")");
}
