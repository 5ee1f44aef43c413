#include "app/CsvExport.h"

#include "store/ReportWriter.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>

bool CsvExport::write(const QString& path, const QStringList& keys, const QList<QList<QVariant>>& rows, QString* reason)
{
    std::FILE* out = std::fopen(QFile::encodeName(path).constData(), "wb");
    if (!out) {
        if (reason)
            *reason = QString::fromLocal8Bit(std::strerror(errno));
        return false;
    }
    ReportWriter writer(ReportWriter::Format::Csv, keys, keys, QString(), out);
    for (const auto& row : rows)
        writer.addRow(row);
    writer.finish();
    const bool failed = std::ferror(out) != 0;
    const int savedErrno = errno;
    if (std::fclose(out) != 0 || failed) {
        if (reason)
            *reason = QString::fromLocal8Bit(std::strerror(savedErrno ? savedErrno : EIO));
        return false;
    }
    return true;
}
