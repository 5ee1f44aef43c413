#include "store/SiteStatistics.h"

#include "base/DebugTrace.h"
#include "store/FetchLog.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <sqlite3.h>

#include <functional>

using namespace RecordStatement;

namespace {

void eachRow(const QString& sql, const ProjectPtr& project, const std::function<void(sqlite3_stmt*)>& row)
{
    sqlite3* db = databaseOf(project);
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, text.constData(), &stmt)) {
        DebugTrace("SiteStatistics Error::%s", sqlite3_errmsg(db));
        return;
    }
    while (nextRow(stmt, project))
        row(stmt);
    finish(stmt);
}

} // namespace

const QList<qint64>& SiteStatistics::responseTimeBounds()
{
    static const QList<qint64> bounds{100, 250, 500, 1000, 2000};
    return bounds;
}

SiteStatistics SiteStatistics::read(const ProjectPtr& project)
{
    SiteStatistics statistics;
    statistics.responseTimes_.fill(0, responseTimeBounds().size() + 1);
    sqlite3* db = databaseOf(project);
    if (!db)
        return statistics;

    eachRow(QStringLiteral("select depth,count(*) from Page group by depth order by depth"), project, [&](sqlite3_stmt* stmt) {
        statistics.pagesByDepth_.append({QString::number(sqlite3_column_int64(stmt, 0)), sqlite3_column_int64(stmt, 1)});
    });

    const QString fetched = QStringLiteral(" from Page P join ") + FetchLog::tableOrEmpty(db) + QStringLiteral(" F on F.url = P.url");
    QList<Count> failures;
    eachRow(QStringLiteral("select F.status,F.failure,count(*)") + fetched
                + QStringLiteral(" group by F.status,F.failure order by F.status = 0,F.status,F.failure"),
            project, [&](sqlite3_stmt* stmt) {
                const qint64 status = sqlite3_column_int64(stmt, 0);
                const qint64 count = sqlite3_column_int64(stmt, 2);
                if (status > 0) {
                    // Several failures may come with one status: the code is what is counted.
                    if (!statistics.responseCodes_.isEmpty() && statistics.responseCodes_.last().first == QString::number(status))
                        statistics.responseCodes_.last().second += count;
                    else
                        statistics.responseCodes_.append({QString::number(status), count});
                } else {
                    failures.append({columnText(stmt, 1), count});
                }
            });
    statistics.responseCodes_ += failures;

    QString classes = QStringLiteral("case");
    const QList<qint64>& bounds = responseTimeBounds();
    for (int i = 0; i < bounds.size(); ++i)
        classes += QStringLiteral(" when F.response_ms < %1 then %2").arg(bounds.at(i)).arg(i);
    classes += QStringLiteral(" else %1 end").arg(bounds.size());
    eachRow(QStringLiteral("select ") + classes + QStringLiteral(",count(*)") + fetched
                + QStringLiteral(" where F.response_ms >= 0 group by 1"),
            project, [&](sqlite3_stmt* stmt) {
                const int index = int(sqlite3_column_int64(stmt, 0));
                if (index >= 0 && index < statistics.responseTimes_.size())
                    statistics.responseTimes_[index] = sqlite3_column_int64(stmt, 1);
            });
    return statistics;
}
