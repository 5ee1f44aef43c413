#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cstdio>

// Rows printed as they come: CSV (RFC 4180: CRLF line ends, fields quoted when they hold a
// comma, a quote or a line break, a header line of keys), a JSON array of objects (keys as
// names), or a markdown table (headers). The aligned table needs every row's width, so it
// keeps its rows until finish().
class ReportWriter {
public:
    enum class Format { Table, Csv, Json, Markdown };
    static bool parseFormat(const QString& text, Format* format);

    // keys name the fields in CSV and JSON; headers title the table's and markdown's columns.
    ReportWriter(Format format, QStringList keys, QStringList headers, QString title, std::FILE* out = stdout);
    void addRow(const QList<QVariant>& values);
    // JSON only: one object of any shape (nested arrays for grouped reports).
    void addJsonObject(const QVariantMap& object);
    // The aligned table's title line, known once the rows are read.
    void setTitle(const QString& title) { title_ = title; }
    void finish();
    qint64 rowCount() const { return rows_; }

    static QString csvField(const QString& field);
    static QString markdownCell(const QString& text);
    static QString text(const QVariant& value);

private:
    void write(const QString& text);
    void writeHeader();  // CSV's keys, markdown's headers; once
    void writeJson(const QByteArray& json);

    Format format_;
    QStringList keys_;
    QStringList headers_;
    QString title_;
    std::FILE* out_;
    qint64 rows_ = 0;
    bool started_ = false;
    QList<QStringList> tableCells_;
};
