#pragma once

#include <QDateTime>
#include <QString>

// The one date format of the application, "yyyy-MM-dd HH:mm:ss" in local time.
namespace DateFormatter {
inline const QString& format()
{
    static const QString pattern = QStringLiteral("yyyy-MM-dd HH:mm:ss");
    return pattern;
}
inline QString stringFromDate(const QDateTime& date)
{
    return date.isValid() ? date.toLocalTime().toString(format()) : QString();
}
} // namespace DateFormatter
