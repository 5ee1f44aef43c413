#include "store/ReportWriter.h"

#include "store/DisplayText.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

bool ReportWriter::parseFormat(const QString& text, Format* format)
{
    if (text == QLatin1String("table"))
        *format = Format::Table;
    else if (text == QLatin1String("csv"))
        *format = Format::Csv;
    else if (text == QLatin1String("json"))
        *format = Format::Json;
    else if (text == QLatin1String("markdown") || text == QLatin1String("md"))
        *format = Format::Markdown;
    else
        return false;
    return true;
}

ReportWriter::ReportWriter(Format format, QStringList keys, QStringList headers, QString title, std::FILE* out)
    : format_(format), keys_(std::move(keys)), headers_(std::move(headers)), title_(std::move(title)), out_(out)
{
}

// Every format masks the credentials of URLs; CSV and JSON keep the rest as it is (JSON
// escapes control characters itself), the table and markdown show them escaped.
QString ReportWriter::text(const QVariant& value)
{
    if (value.typeId() == QMetaType::Double)
        return QString::number(value.toDouble());
    return DisplayText::maskUserInfo(value.toString());
}

QString ReportWriter::csvField(const QString& field)
{
    if (!field.contains(QLatin1Char(',')) && !field.contains(QLatin1Char('"')) && !field.contains(QLatin1Char('\n'))
        && !field.contains(QLatin1Char('\r')))
        return field;
    QString quoted = field;
    quoted.replace(QLatin1String("\""), QLatin1String("\"\""));
    return QLatin1Char('"') + quoted + QLatin1Char('"');
}

QString ReportWriter::markdownCell(const QString& text)
{
    QString cell = text;
    cell.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    cell.replace(QLatin1Char('|'), QLatin1String("\\|"));
    cell.replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\n'), QLatin1Char(' '));
    return DisplayText::escapeControls(cell);
}

void ReportWriter::write(const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), out_);
}

void ReportWriter::writeJson(const QByteArray& json)
{
    // Indented by QJsonDocument for one object: keep its lines, under the array's own indent.
    QByteArray item = json.trimmed();
    item.replace("\n", "\n    ");
    const QByteArray prefix = started_ ? ",\n    " : "[\n    ";
    std::fwrite(prefix.constData(), 1, size_t(prefix.size()), out_);
    std::fwrite(item.constData(), 1, size_t(item.size()), out_);
    started_ = true;
}

void ReportWriter::writeHeader()
{
    if (started_)
        return;
    started_ = true;
    if (format_ == Format::Csv) {
        QStringList line;
        for (const auto& k : keys_)
            line << csvField(k);
        write(line.join(QLatin1Char(',')) + QStringLiteral("\r\n"));
        return;
    }
    QStringList head, rule;
    for (const auto& h : headers_) {
        head << markdownCell(h);
        rule << QStringLiteral("---");
    }
    write(QStringLiteral("| ") + head.join(QStringLiteral(" | ")) + QStringLiteral(" |\n| ")
          + rule.join(QStringLiteral(" | ")) + QStringLiteral(" |\n"));
}

void ReportWriter::addJsonObject(const QVariantMap& object)
{
    ++rows_;
    writeJson(QJsonDocument(QJsonObject::fromVariantMap(DisplayText::maskUserInfo(QVariant(object)).toMap()))
                  .toJson(QJsonDocument::Indented));
}

void ReportWriter::addRow(const QList<QVariant>& values)
{
    ++rows_;
    switch (format_) {
    case Format::Csv: {
        writeHeader();
        QStringList line;
        for (const auto& v : values)
            line << csvField(text(v));
        write(line.join(QLatin1Char(',')) + QStringLiteral("\r\n"));
        return;
    }
    case Format::Json: {
        QJsonObject object;
        for (int c = 0; c < keys_.size() && c < values.size(); ++c)
            object.insert(keys_[c], QJsonValue::fromVariant(DisplayText::maskUserInfo(values[c])));
        writeJson(QJsonDocument(object).toJson(QJsonDocument::Indented));
        return;
    }
    case Format::Markdown: {
        writeHeader();
        QStringList cells;
        for (const auto& v : values)
            cells << markdownCell(text(v));
        write(QStringLiteral("| ") + cells.join(QStringLiteral(" | ")) + QStringLiteral(" |\n"));
        return;
    }
    case Format::Table: {
        QStringList line;
        for (const auto& v : values) {
            QString t = text(v);
            t.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' ')).replace(QLatin1Char('\t'), QLatin1Char(' '));
            line << DisplayText::escapeControls(t);
        }
        tableCells_.append(line);
        return;
    }
    }
}

void ReportWriter::finish()
{
    switch (format_) {
    case Format::Csv:
        writeHeader();
        break;
    case Format::Json:
        write(started_ ? QStringLiteral("\n]\n") : QStringLiteral("[]\n"));
        break;
    case Format::Markdown:
        writeHeader();
        break;
    case Format::Table: {
        QList<int> widths(headers_.size(), 0);
        auto measure = [&widths](const QStringList& line) {
            for (int c = 0; c < line.size() && c < widths.size(); ++c)
                widths[c] = std::max(widths[c], int(line[c].size()));
        };
        measure(headers_);
        for (const auto& line : tableCells_)
            measure(line);
        auto render = [&widths](const QStringList& line) {
            QString l;
            for (int c = 0; c < line.size(); ++c)
                l += (c ? QStringLiteral("  ") : QString()) + (c + 1 < line.size() ? line[c].leftJustified(widths.value(c)) : line[c]);
            return l + QLatin1Char('\n');
        };
        if (!title_.isEmpty())
            write(DisplayText::forTerminal(title_) + QLatin1Char('\n'));
        write(render(headers_));
        for (const auto& line : tableCells_)
            write(render(line));
        tableCells_.clear();
        break;
    }
    }
    std::fflush(out_);
}
