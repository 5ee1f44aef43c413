#include "store/SiteTree.h"

#include "base/DebugTrace.h"
#include "store/FetchLog.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <sqlite3.h>

#include <algorithm>

using namespace RecordStatement;

SiteTree SiteTree::read(const ProjectPtr& project)
{
    SiteTree tree;
    sqlite3* db = databaseOf(project);
    if (!db)
        return tree;
    const QString pagesSql = QStringLiteral("select P.idt,P.url,P.title,P.depth,P.in_link_count,F.status,F.failure,"
                                            "F.url is not null from Page P left join ")
                             + FetchLog::tableOrEmpty(db) + QStringLiteral(" F on F.url = P.url order by P.idt");
    const QByteArray pagesText = pagesSql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, pagesText.constData(), &stmt)) {
        DebugTrace("SiteTree pages Error::%s", sqlite3_errmsg(db));
        return tree;
    }
    while (nextRow(stmt, project)) {
        Node node;
        node.idt = sqlite3_column_int64(stmt, 0);
        node.url = columnText(stmt, 1);
        node.title = columnText(stmt, 2);
        node.depth = sqlite3_column_int64(stmt, 3);
        node.inLinkCount = sqlite3_column_int64(stmt, 4);
        node.status = sqlite3_column_int64(stmt, 5);
        node.failure = columnText(stmt, 6);
        node.fetched = sqlite3_column_int64(stmt, 7) != 0;
        tree.indexOfIdt_.insert(node.idt, int(tree.nodes_.size()));
        tree.nodes_.append(node);
    }
    finish(stmt);

    // The first recorded link from one level up makes the parent.
    const char* linksSql = "select idt_page,idt_source from Links order by rowid";
    if (!prepare(db, linksSql, &stmt)) {
        DebugTrace("SiteTree links Error::%s", sqlite3_errmsg(db));
        return tree;
    }
    while (nextRow(stmt, project)) {
        const int target = tree.indexOf(sqlite3_column_int64(stmt, 0));
        const int source = tree.indexOf(sqlite3_column_int64(stmt, 1));
        if (target < 0 || source < 0 || target == source)
            continue;
        Node& node = tree.nodes_[target];
        if (node.parentIdt >= 0 || tree.nodes_.at(source).depth != node.depth - 1)
            continue;
        node.parentIdt = tree.nodes_.at(source).idt;
        tree.nodes_[source].children.append(target);
    }
    finish(stmt);

    for (int i = 0; i < tree.nodes_.size(); ++i)
        if (tree.nodes_.at(i).parentIdt < 0)
            tree.roots_.append(i);
    // The start page (the shallowest root) leads; the others follow by depth, then as stored.
    std::stable_sort(tree.roots_.begin(), tree.roots_.end(),
                     [&](int a, int b) { return tree.nodes_.at(a).depth < tree.nodes_.at(b).depth; });
    return tree;
}
