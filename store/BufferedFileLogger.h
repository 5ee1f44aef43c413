#pragma once

#include <QByteArray>
#include <QString>

// Appends log entries to a file in chunks: entries wait in memory until the buffer reaches
// the limit (or a flush), then go to the end of the file in one write.
class BufferedFileLogger {
public:
    BufferedFileLogger(const QString& fileName, qint32 limitLength);
    static BufferedFileLogger* initWithFileName(const QString& fileName, qint32 limitLength)
    {
        return new BufferedFileLogger(fileName, limitLength);
    }

    qint32 logEntryLimitLength() const { return logEntryLimitLength_; }
    QString fileName() const { return fileName_; }
    QString msOfLogEntrys() const { return msOfLogEntrys_; }

    void appendLogEntry(const QString& entry);
    void flush();
    void flushLogEntrys();

    static void saveHtmlContent(const QString& content, const QString& projectName, const QString& name);
    static void saveHtmlData(const QByteArray& data, const QString& projectName, const QString& name);

private:
    qint32 logEntryLimitLength_;
    QString fileName_;
    QString msOfLogEntrys_;
};
