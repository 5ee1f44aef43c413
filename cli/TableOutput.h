#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

// Rows written as an aligned table (with a title line), CSV (RFC 4180) or a JSON array of
// objects.
class TableOutput {
public:
    enum class Format { Table, Csv, Json };
    static bool parseFormat(const QString& text, Format* format);

    // keys name the fields in CSV and JSON; headers are the table's column titles.
    TableOutput(QStringList keys, QStringList headers);
    void addRow(const QList<QVariant>& values);
    QString render(Format format, const QString& title) const;

    static QString csvField(const QString& field);

private:
    static QString text(const QVariant& value);

    QStringList keys_;
    QStringList headers_;
    QList<QList<QVariant>> rows_;
};
