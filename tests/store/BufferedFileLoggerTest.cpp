#include "store/BufferedFileLogger.h"
#include "store/DataModelManager.h"
#include "store/Project.h"
#include "support/TestApp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace {

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

TEST(BufferedFileLogger, FlushesWhenTheBufferReachesTheLimit)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/log.txt";
    BufferedFileLogger logger(path, 1024);
    EXPECT_EQ(logger.logEntryLimitLength(), 1024);
    EXPECT_EQ(logger.fileName(), path);
    logger.appendLogEntry(QString(1023, QLatin1Char('a')));
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_EQ(logger.msOfLogEntrys().size(), 1023);
    logger.appendLogEntry(QStringLiteral("b"));
    EXPECT_EQ(readAll(path), QByteArray(1023, 'a') + "b");
    EXPECT_TRUE(logger.msOfLogEntrys().isEmpty());
}

TEST(BufferedFileLogger, FirstFlushCreatesLaterFlushesAppend)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/log.txt";
    BufferedFileLogger logger(path, 1024);
    logger.appendLogEntry(QStringLiteral("one\n"));
    logger.flush();
    EXPECT_EQ(readAll(path), "one\n");
    logger.appendLogEntry(QStringLiteral("two\n"));
    logger.flush();
    EXPECT_EQ(readAll(path), "one\ntwo\n");
    // A new logger on the same file appends too.
    BufferedFileLogger again(path, 1024);
    again.appendLogEntry(QStringLiteral("été\n"));
    again.flushLogEntrys();
    EXPECT_EQ(QString::fromUtf8(readAll(path)), QStringLiteral("one\ntwo\nété\n"));
}

TEST(BufferedFileLogger, AnEntryLongerThanTheLimitIsWrittenWhole)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/log.txt";
    BufferedFileLogger logger(path, 10);
    logger.appendLogEntry(QString(25, QLatin1Char('z')));
    EXPECT_EQ(readAll(path), QByteArray(25, 'z'));
    EXPECT_TRUE(logger.msOfLogEntrys().isEmpty());
}

TEST(BufferedFileLogger, AFileThatCannotBeOpenedKeepsTheEntries)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/busy";
    ASSERT_TRUE(QDir().mkpath(path));  // a folder where the log should be: it exists but cannot be written
    BufferedFileLogger logger(path, 1024);
    logger.appendLogEntry(QStringLiteral("kept"));
    logger.flush();
    EXPECT_EQ(logger.msOfLogEntrys(), "kept");
    ASSERT_TRUE(QDir(path).removeRecursively());
    logger.flush();
    EXPECT_EQ(readAll(path), "kept");
    EXPECT_TRUE(logger.msOfLogEntrys().isEmpty());
}

TEST(BufferedFileLogger, AFailedFirstWriteLosesTheEntries)
{
    QTemporaryDir dir;
    const QString path = dir.path() + "/no/such/folder/log.txt";
    BufferedFileLogger logger(path, 1024);
    logger.appendLogEntry(QStringLiteral("lost"));
    logger.flush();
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_TRUE(logger.msOfLogEntrys().isEmpty());
}

TEST(ProjectLogs, TheErrorLogLivesBesideTheDatabases)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("site", "http://example.com", -1, -1);
    EXPECT_FALSE(p->fileErrorLogHandle());
    p->appendToErrorFileLogHandle(QStringLiteral("first error\n"));
    ASSERT_TRUE(p->fileErrorLogHandle());
    EXPECT_EQ(p->fileErrorLogHandle()->fileName(), app.path() + "/site_errors.log");
    EXPECT_EQ(p->fileErrorLogHandle()->logEntryLimitLength(), 1024);
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/site_errors.log"));  // still buffered
    p->flushLogs();
    EXPECT_EQ(readAll(app.path() + "/site_errors.log"), "first error\n");
}

TEST(ProjectLogs, FlushLogsWithoutErrorsCreatesNoFile)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("quiet", "http://example.com", -1, -1);
    p->flushLogs();
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/quiet_errors.log"));
    EXPECT_FALSE(QFileInfo::exists(app.manager()->fullLogFileNameWithProjectName("quiet")));
}

TEST(ProjectLogs, TheHooksWriteNothing)
{
    TestApp app;
    ProjectPtr p = Project::createProjectWithName("hooks", "http://example.com", -1, -1);
    p->appendToFileLogHandle(QStringLiteral("line\n"));
    p->saveHtmlContent(QStringLiteral("<html/>"), QStringLiteral("content_html_1.html"));
    p->saveHtmlData(QByteArray("<html/>"), QStringLiteral("content_html_2.html"));
    p->flushLogs();
    EXPECT_FALSE(p->fileLogHandle());
    EXPECT_FALSE(QFileInfo::exists(app.manager()->fullLogFileNameWithProjectName("hooks")));
    EXPECT_FALSE(QFileInfo::exists(app.manager()->defaultLogFolder() + "/hooks"));
}

TEST(ProjectLogs, FilePlaces)
{
    TestApp app;
    DataModelManager* m = app.manager();
    EXPECT_EQ(m->defaultLogFolder(), app.path() + "/Logs");
    EXPECT_TRUE(QFileInfo(m->defaultLogFolder()).isDir());
    EXPECT_EQ(m->fullLogFileNameWithProjectName("p"), app.path() + "/Logs/p.log");
    EXPECT_EQ(m->fullLogErrorsFileNameWithProjectName("p"), app.path() + "/p_errors.log");
    EXPECT_FALSE(QFileInfo::exists(app.path() + "/Logs/p"));
    EXPECT_EQ(m->fullHtmlLocalFileNameWithProjectName("p", "x.html"), app.path() + "/Logs/p/x.html");
    EXPECT_TRUE(QFileInfo(app.path() + "/Logs/p").isDir());
}

TEST(ProjectLogs, SavedPagesAreWrittenWhole)
{
    TestApp app;
    BufferedFileLogger::saveHtmlContent(QStringLiteral("<p>é</p>"), "p", "a.html");
    BufferedFileLogger::saveHtmlData(QByteArray("\x00\x01raw", 5), "p", "b.html");
    EXPECT_EQ(QString::fromUtf8(readAll(app.path() + "/Logs/p/a.html")), QStringLiteral("<p>é</p>"));
    EXPECT_EQ(readAll(app.path() + "/Logs/p/b.html"), QByteArray("\x00\x01raw", 5));
}

TEST(ProjectLogs, DeletionsTouchOnlyWhatIsThere)
{
    TestApp app;
    DataModelManager* m = app.manager();
    m->deleteLogFileNameWithProjectName("none");
    m->deleteLogErrorsFileNameWithProjectName("none");
    m->deleteHtmlLocalFilesWithProjectName("none");
    EXPECT_TRUE(QFileInfo(m->defaultLogFolder()).isDir());

    QFile log(m->fullLogFileNameWithProjectName("x"));
    ASSERT_TRUE(log.open(QIODevice::WriteOnly));
    log.close();
    m->fullHtmlLocalFileNameWithProjectName("x", "a.html");
    QFile other(m->fullLogFileNameWithProjectName("y"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.close();
    m->deleteLogFileNameWithProjectName("x");
    m->deleteHtmlLocalFilesWithProjectName("x");
    EXPECT_FALSE(QFileInfo::exists(log.fileName()));
    EXPECT_FALSE(QFileInfo::exists(m->defaultLogFolder() + "/x"));
    EXPECT_TRUE(QFileInfo::exists(other.fileName()));
}

} // namespace
