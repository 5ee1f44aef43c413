#include "store/PageListing.h"

#include "base/DebugTrace.h"
#include "store/Localization.h"
#include "store/PageFilter.h"
#include "store/RecordStatement.h"

#include <QMap>
#include <QUrl>

#include <sqlite3.h>

using namespace RecordStatement;

namespace {

const QMap<QString, QString>& sortExpressions()
{
    static const QMap<QString, QString> map{
        {QStringLiteral("url"), QStringLiteral("P.url")},
        {QStringLiteral("title"), QStringLiteral("P.title")},
        {QStringLiteral("depth"), QStringLiteral("P.depth")},
        {QStringLiteral("inLinkCount"), QStringLiteral("P.in_link_count")},
        {QStringLiteral("outLinkCount"), QStringLiteral("P.out_link_count")},
        {QStringLiteral("weight"), QStringLiteral("P.weight")},
        {QStringLiteral("status"), QStringLiteral("F.status")},
        {QStringLiteral("error"), QStringLiteral("F.failure")},
        {QStringLiteral("responseMs"), QStringLiteral("F.response_ms")},
    };
    return map;
}

// The joins and conditions of each filter, as the record lists have them.
QString filterClause(qint32 filter, bool* bindsTitle)
{
    *bindsTitle = false;
    switch (PageFilter::normalized(filter)) {
    case PageFilter::Error404AllTypes:
        *bindsTitle = true;
        return QStringLiteral(" where P.title = ?");
    case PageFilter::Error404OnlyHTML:
        *bindsTitle = true;
        return QStringLiteral(" join LinkHeaders LH on P.url=LH.url where P.title = ? and LH.content_type like '%html%'");
    case PageFilter::Error404NotHTML:
        *bindsTitle = true;
        return QStringLiteral(" join LinkHeaders LH on P.url=LH.url where P.title = ? and LH.content_type not like '%html%'");
    case PageFilter::NoIndex:
        return QStringLiteral(" where P.is_no_index=1");
    case PageFilter::Canonical:
        return QStringLiteral(" where P.is_canonical=1");
    default:
        return QStringLiteral(" join LinkHeaders LH on P.url=LH.url where P.is_no_index=0 and P.is_no_follow=0 and "
                              "P.is_canonical=0 and LH.content_type like '%html%'");
    }
}

} // namespace

QStringList PageListing::columns()
{
    return {QStringLiteral("url"),         QStringLiteral("title"),  QStringLiteral("depth"),
            QStringLiteral("inLinkCount"), QStringLiteral("outLinkCount"), QStringLiteral("weight"),
            QStringLiteral("status"),      QStringLiteral("responseMs"),   QStringLiteral("error")};
}

bool PageListing::isColumn(const QString& name)
{
    return sortExpressions().contains(name);
}

QString PageListing::storedURLMatching(const QString& typed, const ProjectPtr& project)
{
    auto unescaped = [](const QString& url) {
        QString plain = QUrl::fromPercentEncoding(url.toUtf8());
        if (plain.endsWith(QLatin1Char('/')))
            plain.chop(1);
        return plain;
    };
    const QString wanted = unescaped(typed);
    sqlite3* db = databaseOf(project);
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, "select url from Page order by idt", &stmt)) {
        DebugTrace("storedURLMatching Error::%s", sqlite3_errmsg(db));
        return QString();
    }
    QString found;
    while (found.isNull() && nextRow(stmt, project)) {
        const QString url = columnText(stmt, 0);
        if (unescaped(url) == wanted)
            found = url;
    }
    finish(stmt);
    return found;
}

bool PageListing::forEachPage(qint32 filter, const QString& sortColumn, bool descending, const ProjectPtr& project,
                              const std::function<void(const Row&)>& row)
{
    sqlite3* db = databaseOf(project);
    bool bindsTitle = false;
    QString sql = QStringLiteral("select P.idt,P.path,P.page,P.title,P.url,P.is_no_index,P.is_no_follow,P.is_canonical,"
                                 "P.in_link_count,P.out_link_count,P.depth,P.weight,")
                  + FetchLog::columnsOfF() + QStringLiteral(" from Page P left join ") + FetchLog::tableOrEmpty(db)
                  + QStringLiteral(" F on F.url=P.url") + filterClause(filter, &bindsTitle) + QStringLiteral(" order by ");
    if (!sortColumn.isEmpty() && isColumn(sortColumn))
        sql += sortExpressions().value(sortColumn) + (descending ? QStringLiteral(" desc,") : QStringLiteral(" asc,"));
    sql += QStringLiteral("P.idt");
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, text.constData(), &stmt)) {
        DebugTrace("forEachPage Error::%s", sqlite3_errmsg(db));
        return false;
    }
    if (bindsTitle)
        bindText(stmt, 1, Localization::localizedString("Error404"));
    while (nextRow(stmt, project)) {
        Row r;
        r.page = QuillmerePage::pageFromStatement(stmt, project);
        if (sqlite3_column_type(stmt, 12) != SQLITE_NULL)
            r.fetch = FetchLog::fetchLogFromStatement(stmt, 12);
        row(r);
    }
    finish(stmt);
    return true;
}

QVariant PageListing::cellValue(const QString& column, const Row& row, bool table)
{
    const QuillmerePage& p = *row.page;
    if (column == QLatin1String("url"))
        return p.url();
    if (column == QLatin1String("title"))
        return p.title();
    if (column == QLatin1String("depth"))
        return p.depth();
    if (column == QLatin1String("inLinkCount"))
        return p.inLinkCount();
    if (column == QLatin1String("outLinkCount"))
        return p.outLinkCount();
    if (column == QLatin1String("weight"))
        return p.weight();
    if (!row.fetch)
        return table ? QVariant(QStringLiteral("-")) : QVariant();
    if (column == QLatin1String("status")) {
        if (table)
            return row.fetch->statusText();
        return row.fetch->status() > 0 ? QVariant(row.fetch->status()) : QVariant();
    }
    if (column == QLatin1String("responseMs"))
        return row.fetch->responseMs() >= 0 ? QVariant(row.fetch->responseMs()) : QVariant();
    return row.fetch->failure().isEmpty() ? (table ? QVariant(QStringLiteral("-")) : QVariant()) : QVariant(row.fetch->failure());
}
