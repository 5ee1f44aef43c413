#include "cli/TableOutput.h"

#include "store/ReportWriter.h"
#include "store/DisplayText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

bool TableOutput::parseFormat(const QString& text, Format* format)
{
    if (text == QLatin1String("table"))
        *format = Format::Table;
    else if (text == QLatin1String("csv"))
        *format = Format::Csv;
    else if (text == QLatin1String("json"))
        *format = Format::Json;
    else
        return false;
    return true;
}

TableOutput::TableOutput(QStringList keys, QStringList headers) : keys_(std::move(keys)), headers_(std::move(headers)) {}

void TableOutput::addRow(const QList<QVariant>& values)
{
    rows_.append(values);
}

// The streaming reports' own conversions: one quoting rule for every CSV the program writes.
QString TableOutput::text(const QVariant& value)
{
    return ReportWriter::text(value);
}

QString TableOutput::csvField(const QString& field)
{
    return ReportWriter::csvField(field);
}

QString TableOutput::render(Format format, const QString& title) const
{
    QString out;
    if (format == Format::Csv) {
        QStringList line;
        for (const auto& k : keys_)
            line << csvField(k);
        out += line.join(QLatin1Char(',')) + QStringLiteral("\r\n");
        for (const auto& row : rows_) {
            line.clear();
            for (const auto& v : row)
                line << csvField(text(v));
            out += line.join(QLatin1Char(',')) + QStringLiteral("\r\n");
        }
        return out;
    }
    if (format == Format::Json) {
        QJsonArray array;
        for (const auto& row : rows_) {
            QJsonObject object;
            for (int c = 0; c < keys_.size() && c < row.size(); ++c)
                object.insert(keys_[c], QJsonValue::fromVariant(DisplayText::maskUserInfo(row[c])));
            array.append(object);
        }
        return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Indented));
    }
    // Table: the title, then columns padded to their widest cell; line breaks in cells
    // become spaces so that one row stays one line.
    QList<QStringList> cells;
    cells.append(headers_);
    for (const auto& row : rows_) {
        QStringList line;
        for (const auto& v : row) {
            QString t = text(v);
            t.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\t'), QLatin1Char(' '));
            line << DisplayText::escapeControls(t);
        }
        cells.append(line);
    }
    QList<int> widths(headers_.size(), 0);
    for (const auto& line : cells)
        for (int c = 0; c < line.size() && c < widths.size(); ++c)
            widths[c] = std::max(widths[c], int(line[c].size()));
    if (!title.isEmpty())
        out += title + QLatin1Char('\n');
    for (const auto& line : cells) {
        QString l;
        for (int c = 0; c < line.size(); ++c)
            l += (c ? QStringLiteral("  ") : QString()) + (c + 1 < line.size() ? line[c].leftJustified(widths[c]) : line[c]);
        out += l + QLatin1Char('\n');
    }
    return out;
}
