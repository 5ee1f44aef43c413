#pragma once

#include <QString>

// Serialises the registry's read-check-write steps between processes (two `new` of one name,
// a `new` and a `delete`): an open-file-description lock on "Quillmere.storedata-lock" beside
// the registry, held from before the registry is read to after it is saved. The file stays
// in place (removing it would let a waiting process lock a file nobody else sees); the lock
// goes with its process, even one killed outright.
class RegistryLock {
public:
    explicit RegistryLock(const QString& storeFilePath);
    ~RegistryLock();
    RegistryLock(const RegistryLock&) = delete;
    RegistryLock& operator=(const RegistryLock&) = delete;

    static QString lockFilePath(const QString& storeFilePath);

    // Waits for the lock up to timeoutMs. False when it did not come: another process kept
    // it (errorString() empty) or the system refused it (errorString() says why); a lock file that cannot be made at all (a read-only data directory, where the
    // registry cannot change either) is not waited for: answers true, unlocked.
    bool lock(int timeoutMs = 30000);
    bool isLocked() const { return fd_ >= 0; }
    QString path() const { return path_; }
    QString errorString() const { return errorString_; }

private:
    QString path_;
    int fd_ = -1;
    QString errorString_;
};
