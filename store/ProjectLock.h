#pragma once

#include <QString>

// Keeps two programs from crawling, vacuuming or deleting one project at the same time.
// The lock is the operating system's (an fcntl lock) on NAME.lock beside the crawl database, so a
// process that dies, even by SIGKILL, lets it go; the file holds the owner's PID and what it
// is doing, for the message of whoever is refused. Readers take no lock.
class ProjectLock {
public:
    enum class Result { Locked, Busy, Failed };

    explicit ProjectLock(QString lockFilePath);
    ~ProjectLock();  // release()
    ProjectLock(const ProjectLock&) = delete;
    ProjectLock& operator=(const ProjectLock&) = delete;

    // "/data/site.sqlite" -> "/data/site.lock".
    static QString lockFilePathForDatabase(const QString& databasePath);

    // Never waits. Busy: another open of the file holds it (ownerProcessId() and
    // ownerPurpose() say who, when it wrote so); Failed: the file cannot be made
    // (errorString()).
    Result tryLock(const QString& purpose);
    bool isLocked() const { return fd_ >= 0; }
    // Removes the lock file while still holding it, then lets the lock go: a process that
    // opened the old file meanwhile sees it replaced and tries again.
    void release();

    // Whether some process holds the lock now, without taking it or making the file.
    static bool isHeld(const QString& lockFilePath, qint64* ownerProcessId = nullptr, QString* ownerPurpose = nullptr);

    QString path() const { return path_; }
    qint64 ownerProcessId() const { return ownerProcessId_; }
    QString ownerPurpose() const { return ownerPurpose_; }
    QString errorString() const { return errorString_; }

private:
    QString path_;
    int fd_ = -1;
    qint64 ownerProcessId_ = 0;
    QString ownerPurpose_;
    QString errorString_;
};
