#include "store/ResponseCodes.h"

#include "base/DebugTrace.h"
#include "store/FetchLog.h"
#include "store/Project.h"
#include "store/RecordStatement.h"

#include <sqlite3.h>

using namespace RecordStatement;

QList<ResponseCodes::Count> ResponseCodes::counts(const std::shared_ptr<Project>& project)
{
    QList<Count> result;
    sqlite3* db = databaseOf(project);
    if (!db)
        return result;
    // A status wins over a failure: a page refused for its type was still answered.
    const QString sql = QStringLiteral("select case when F.status > 0 then (F.status / 100) || 'xx' else 'failed' end, "
                                       "case when F.status > 0 then cast(F.status as text) else F.failure end, count(*) "
                                       "from ")
                        + FetchLog::tableOrEmpty(db) + QStringLiteral(" F group by 1, 2 order by 1, 2");
    const QByteArray text = sql.toUtf8();
    sqlite3_stmt* stmt = nullptr;
    if (!prepare(db, text.constData(), &stmt)) {
        DebugTrace("ResponseCodes Error::%s", sqlite3_errmsg(db));
        return result;
    }
    while (nextRow(stmt, project))
        result.append({columnText(stmt, 0), columnText(stmt, 1), sqlite3_column_int64(stmt, 2)});
    finish(stmt);
    return result;
}

qint64 ResponseCodes::errorCount(const QList<Count>& counts)
{
    qint64 n = 0;
    for (const auto& c : counts)
        if (c.statusClass == QLatin1String("4xx") || c.statusClass == QLatin1String("5xx")
            || c.statusClass == QLatin1String("failed"))
            n += c.count;
    return n;
}
