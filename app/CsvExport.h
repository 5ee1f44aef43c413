#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

// A list written to a CSV file by the command line's report writer, so that a list exported
// from the window reads as the command line prints it.
class CsvExport {
public:
    // False, with the system's reason, when the file could not be written.
    static bool write(const QString& path, const QStringList& keys, const QList<QList<QVariant>>& rows,
                      QString* reason);
};
