#pragma once

#include <QList>
#include <QString>

#include <memory>

struct sqlite3_stmt;
class Project;
class QuillmereDownloaderQueue;
using QuillmereDownloaderQueuePtr = std::shared_ptr<QuillmereDownloaderQueue>;

// One entry of the persistent crawl frontier. Its identifier is also its place in the queue;
// entries go from waiting to done and are only ever removed all together.
class QuillmereDownloaderQueue {
public:
    QuillmereDownloaderQueue(qint64 idt, const QString& url, const QString& path, const QString& documentName,
                             qint64 depth, bool performDone, const std::shared_ptr<Project>& project);

    // Adds a waiting entry; no duplicate check (see pageURLIsAlreadyInQueue).
    static QuillmereDownloaderQueuePtr createDownloaderQueueWithURL(const QString& url, const QString& path,
                                                                    const QString& documentName, qint32 depth,
                                                                    const std::shared_ptr<Project>& project);
    // The next batch: at most 100 waiting entries, oldest first.
    static QList<QuillmereDownloaderQueuePtr> getAllWaitingDownloaderQueueForProject(
        const std::shared_ptr<Project>& project);
    static qint64 countWaitingDownloaderQueueForProject(const std::shared_ptr<Project>& project);
    static qint64 countDoneDownloaderQueueForProject(const std::shared_ptr<Project>& project);
    // Entries (waiting and done) with exactly this URL.
    static qint64 countDownloaderQueueWithURL(const QString& url, const std::shared_ptr<Project>& project);
    // Exact text comparison; waiting and done entries both count.
    static bool pageURLIsAlreadyInQueue(const QString& url, const std::shared_ptr<Project>& project);
    static QuillmereDownloaderQueuePtr downloaderQueueFromStatement(sqlite3_stmt* statement,
                                                                    const std::shared_ptr<Project>& project);

    // Writes the state of this entry's row; the entry's own performDone is left as it was.
    void updatePerformDoneWithBooleanValue(bool value);

    QString description() const;

    qint64 idt() const { return idt_; }
    void setIdt(qint64 v) { idt_ = v; }
    QString url() const { return url_; }
    void setUrl(const QString& v) { url_ = v; }
    QString path() const { return path_; }
    void setPath(const QString& v) { path_ = v; }
    QString documentName() const { return documentName_; }
    void setDocumentName(const QString& v) { documentName_ = v; }
    qint64 depth() const { return depth_; }
    void setDepth(qint64 v) { depth_ = v; }
    bool performDone() const { return performDone_; }
    void setPerformDone(bool v) { performDone_ = v; }
    std::weak_ptr<Project> project() const { return project_; }
    void setProject(const std::shared_ptr<Project>& v) { project_ = v; }

private:
    qint64 idt_ = 0;
    QString url_;
    QString path_;
    QString documentName_;
    qint64 depth_ = 0;
    bool performDone_ = false;
    std::weak_ptr<Project> project_;
};
