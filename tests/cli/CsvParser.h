#pragma once

#include <QList>
#include <QString>
#include <QStringList>

// A strict RFC 4180 reader for the tests: records end with CRLF, fields are quoted when they
// hold a comma, a quote or a line break, quotes inside doubled. Anything else is an error.
class CsvParser {
public:
    static QList<QStringList> parse(const QString& text, QString* error)
    {
        QList<QStringList> records;
        QStringList record;
        QString field;
        int i = 0;
        const int n = int(text.size());
        error->clear();
        while (i < n) {
            field.clear();
            if (text[i] == QLatin1Char('"')) {
                ++i;
                for (;;) {
                    if (i >= n) {
                        *error = QStringLiteral("unterminated quoted field");
                        return records;
                    }
                    if (text[i] == QLatin1Char('"')) {
                        if (i + 1 < n && text[i + 1] == QLatin1Char('"')) {
                            field += QLatin1Char('"');
                            i += 2;
                            continue;
                        }
                        ++i;
                        break;
                    }
                    field += text[i++];
                }
            } else {
                while (i < n && text[i] != QLatin1Char(',') && text[i] != QLatin1Char('\r')) {
                    if (text[i] == QLatin1Char('"') || text[i] == QLatin1Char('\n')) {
                        *error = QStringLiteral("a quote or a bare line feed in an unquoted field at %1").arg(i);
                        return records;
                    }
                    field += text[i++];
                }
            }
            record << field;
            if (i < n && text[i] == QLatin1Char(',')) {
                ++i;
                continue;
            }
            if (i + 1 < n && text[i] == QLatin1Char('\r') && text[i + 1] == QLatin1Char('\n')) {
                i += 2;
                records << record;
                record.clear();
                continue;
            }
            *error = QStringLiteral("a record that does not end with CRLF at %1").arg(i);
            return records;
        }
        if (!record.isEmpty())
            *error = QStringLiteral("the last record does not end with CRLF");
        return records;
    }
};
