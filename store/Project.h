#pragma once

#include "store/ManagedObject.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>

#include <memory>

struct sqlite3;
class SQLite3Wrapper;
class BufferedFileLogger;
class RobotEntry;
struct CrawlCounters;

class Project;
using ProjectPtr = std::shared_ptr<Project>;

// One crawled site: its persistent registry record, plus the handles of its open crawl
// database and error log (transient, rebuilt on demand).
class Project : public ManagedObject, public std::enable_shared_from_this<Project> {
public:
    Project() = default;
    ~Project() override;

    // Registry operations (main thread, through the shared application delegate).
    static ProjectPtr createProjectWithName(const QString& name, const QString& url, qint32 limitDepth,
                                            qint32 limitPageCount);
    static QList<ProjectPtr> getAllProjects();
    static ProjectPtr getProjectWithName(const QString& name);
    static ProjectPtr getProjectWithURL(const QString& url);
    static qint64 countProjects();
    static void deleteProjectWithName(const QString& name);
    static void deleteAllProjects();

    // Persistent attributes. Numbers read as 32-bit values; an unset number reads as 0.
    QString name() const;
    void setName(const QString& v);
    QString url() const;
    void setUrl(const QString& v);
    QDateTime creation_date() const;
    void setCreation_date(const QDateTime& v);
    QDateTime crawler_start_date() const;
    void setCrawler_start_date(const QDateTime& v);
    QDateTime crawler_stop_date() const;
    void setCrawler_stop_date(const QDateTime& v);
    qint32 limit_depth() const;
    void setLimit_depth(qint32 v);
    qint32 limit_page_count() const;
    void setLimit_page_count(qint32 v);
    qint32 max_depth() const;
    void setMax_depth(qint32 v);
    qint32 pages_count() const;
    void setPages_count(qint32 v);
    QString sqlite_name() const;
    void setSqlite_name(const QString& v);
    bool explore_no_index() const;
    void setExplore_no_index(bool v);
    bool explore_no_follow() const;
    void setExplore_no_follow(bool v);
    bool explore_ariane() const;
    void setExplore_ariane(bool v);
    bool explore_sitewides() const;
    void setExplore_sitewides(bool v);

    // Transient slots.
    std::shared_ptr<SQLite3Wrapper> database() const { return database_; }
    void setDatabase(std::shared_ptr<SQLite3Wrapper> wrapper) { database_ = std::move(wrapper); }
    std::shared_ptr<BufferedFileLogger> fileLogHandle() const { return fileLogHandle_; }
    void setFileLogHandle(std::shared_ptr<BufferedFileLogger> logger) { fileLogHandle_ = std::move(logger); }
    std::shared_ptr<BufferedFileLogger> fileErrorLogHandle() const { return fileErrorLogHandle_; }
    void setFileErrorLogHandle(std::shared_ptr<BufferedFileLogger> logger) { fileErrorLogHandle_ = std::move(logger); }

    // A crawl's counters that pages_count and max_depth read instead of the registry's
    // values while set (null: the registry's). Set and cleared on the main thread while the
    // crawler waits.
    void setLiveCounters(std::shared_ptr<const CrawlCounters> counters) { liveCounters_ = std::move(counters); }
    const std::shared_ptr<const CrawlCounters>& liveCounters() const { return liveCounters_; }

    // Derived.
    bool isLimitDepthExpected() const;
    bool isLimitPageCountExpected() const;
    QString description() const;
    QString full_sqlite_name() const;

    // Crawl database lifecycle.
    sqlite3* sqlite3Database();
    bool openSQLiteDatabase();
    // For a command that only reads: the file is opened read-only and left as it is (see
    // ReadOnlyDatabase). False when it cannot be read.
    bool openSQLiteDatabaseForReading();
    void closeSQLiteDatabase();
    void truncateSQLiteDatabase();
    void deleteSQLiteDatabase();

    // Logs and saved pages.
    void appendToFileLogHandle(const QString& entry);
    void appendToErrorFileLogHandle(const QString& entry);
    void flushLogs();
    void saveHtmlContent(const QString& content, const QString& name);
    void saveHtmlData(const QByteArray& data, const QString& name);

    // robots.txt rules; defined with the rule classes in html/ProjectRobots.cpp.
    void loadRobotsTxt(const QString& robotsTxt, QList<std::shared_ptr<RobotEntry>>& array) const;
    bool isAllowedURL(const QString& path, const QList<std::shared_ptr<RobotEntry>>& array) const;

private:
    qint32 intAttribute(const char* key) const;

    std::shared_ptr<SQLite3Wrapper> database_;
    std::shared_ptr<BufferedFileLogger> fileLogHandle_;
    std::shared_ptr<BufferedFileLogger> fileErrorLogHandle_;
    std::shared_ptr<const CrawlCounters> liveCounters_;
};
