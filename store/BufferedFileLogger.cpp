#include "store/BufferedFileLogger.h"

#include "store/ApplicationDelegate.h"
#include "store/DataModelManager.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {
void writeAtomically(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(bytes);
    file.commit();
}

QString savedPagePath(const QString& projectName, const QString& name)
{
    ApplicationDelegate* delegate = ApplicationDelegate::sharedAppDelegate();
    if (!delegate || !delegate->dataModelManager())
        return QString();
    return delegate->dataModelManager()->fullHtmlLocalFileNameWithProjectName(projectName, name);
}
} // namespace

BufferedFileLogger::BufferedFileLogger(const QString& fileName, qint32 limitLength)
    : logEntryLimitLength_(limitLength), fileName_(fileName), msOfLogEntrys_(QStringLiteral(""))
{
}

void BufferedFileLogger::appendLogEntry(const QString& entry)
{
    msOfLogEntrys_.append(entry);
    if (msOfLogEntrys_.length() >= logEntryLimitLength_)
        flushLogEntrys();
}

void BufferedFileLogger::flush()
{
    flushLogEntrys();
}

void BufferedFileLogger::flushLogEntrys()
{
    if (!QFileInfo::exists(fileName_)) {
        // First write: the file is created in one go; a failure loses the entries.
        writeAtomically(fileName_, msOfLogEntrys_.toUtf8());
        msOfLogEntrys_ = QString(QStringLiteral(""));
        return;
    }
    QFile file(fileName_);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;  // keep the entries for a later flush
    file.write(msOfLogEntrys_.toUtf8());
    file.close();
    msOfLogEntrys_ = QString(QStringLiteral(""));
}

void BufferedFileLogger::saveHtmlContent(const QString& content, const QString& projectName, const QString& name)
{
    const QString path = savedPagePath(projectName, name);
    if (!path.isEmpty())
        writeAtomically(path, content.toUtf8());
}

void BufferedFileLogger::saveHtmlData(const QByteArray& data, const QString& projectName, const QString& name)
{
    const QString path = savedPagePath(projectName, name);
    if (!path.isEmpty())
        writeAtomically(path, data);
}
