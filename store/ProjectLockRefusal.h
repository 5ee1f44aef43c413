#pragma once

#include "store/ProjectLock.h"

#include <QString>

class StringTable;

// Why a project's lock was not had, told the same way by every front end: the process that
// holds it (as its lock file names it), or why the lock file could not be made.
class ProjectLockRefusal {
public:
    ProjectLockRefusal(const ProjectLock& lock, ProjectLock::Result result, const QString& projectName);

    // Another process holds the lock (else the lock file could not be made).
    bool inUse() const { return inUse_; }
    qint64 ownerProcessId() const { return ownerProcessId_; }

    // One line, as the command line prints it.
    QString line(const StringTable& text) const;
    // An alert's message and its informative text, as the window shows them.
    QString message(const StringTable& text) const;
    QString details(const StringTable& text) const;

    // "process 1234 (quillmere crawl)", or "another process" when the holder left no PID.
    static QString owner(qint64 processId, const QString& purpose, const StringTable& text);

private:
    bool inUse_;
    QString projectName_;
    qint64 ownerProcessId_;
    QString ownerPurpose_;
    QString path_;
    QString errorString_;
};
