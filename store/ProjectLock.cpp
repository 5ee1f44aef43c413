#include "store/ProjectLock.h"

#include <QFile>
#include <QThread>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {
// The holder writes its PID right after taking the lock: give it a moment before saying
// that the owner is unknown.
void readOwner(int fd, qint64* processId, QString* purpose)
{
    for (int attempt = 0; attempt < 20; ++attempt) {
        char buffer[512];
        const ssize_t n = pread(fd, buffer, sizeof buffer - 1, 0);
        if (n > 0) {
            const QStringList lines = QString::fromUtf8(buffer, int(n)).split(QLatin1Char('\n'));
            bool ok = false;
            const qint64 pid = lines.value(0).trimmed().toLongLong(&ok);
            if (ok && pid > 0) {
                if (processId)
                    *processId = pid;
                if (purpose)
                    *purpose = lines.value(1).trimmed();
                return;
            }
        }
        QThread::msleep(10);
    }
}

// Open-file-description locks: like flock, held by the open file (a second open in the same
// process conflicts too) and let go when the last descriptor closes, or the process dies;
// unlike flock, they can be tested without being taken.
struct flock wholeFile(short type)
{
    struct flock lock {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = 0;
    lock.l_len = 0;
    return lock;
}

bool sameFile(int fd, const QByteArray& path)
{
    struct stat opened {};
    struct stat named {};
    return fstat(fd, &opened) == 0 && stat(path.constData(), &named) == 0 && opened.st_dev == named.st_dev
           && opened.st_ino == named.st_ino;
}
} // namespace

ProjectLock::ProjectLock(QString lockFilePath) : path_(std::move(lockFilePath)) {}

ProjectLock::~ProjectLock()
{
    release();
}

QString ProjectLock::lockFilePathForDatabase(const QString& databasePath)
{
    QString stem = databasePath;
    if (stem.endsWith(QLatin1String(".sqlite")))
        stem.chop(7);
    return stem + QStringLiteral(".lock");
}

ProjectLock::Result ProjectLock::tryLock(const QString& purpose)
{
    if (fd_ >= 0)
        return Result::Locked;
    ownerProcessId_ = 0;
    ownerPurpose_.clear();
    errorString_.clear();
    const QByteArray file = QFile::encodeName(path_);
    for (int attempt = 0; attempt < 10; ++attempt) {
        const int fd = ::open(file.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        if (fd < 0) {
            errorString_ = QString::fromLocal8Bit(std::strerror(errno));
            return Result::Failed;
        }
        struct flock lock = wholeFile(F_WRLCK);
        if (fcntl(fd, F_OFD_SETLK, &lock) != 0) {
            const int error = errno;
            const bool busy = error == EAGAIN || error == EACCES;
            if (busy)
                readOwner(fd, &ownerProcessId_, &ownerPurpose_);
            else
                errorString_ = QString::fromLocal8Bit(std::strerror(error));
            ::close(fd);
            return busy ? Result::Busy : Result::Failed;
        }
        if (!sameFile(fd, file)) {
            ::close(fd);  // released and removed by its holder while we opened it
            continue;
        }
        // A full disk may refuse the PID; the lock itself holds all the same.
        const QByteArray owner = QByteArray::number(qint64(getpid())) + '\n' + purpose.toUtf8() + '\n';
        if (ftruncate(fd, 0) == 0 && pwrite(fd, owner.constData(), size_t(owner.size()), 0) < 0)
            (void)ftruncate(fd, 0);
        fd_ = fd;
        return Result::Locked;
    }
    errorString_ = QStringLiteral("the lock file keeps being replaced");
    return Result::Failed;
}

void ProjectLock::release()
{
    if (fd_ < 0)
        return;
    ::unlink(QFile::encodeName(path_).constData());
    ::close(fd_);
    fd_ = -1;
}

bool ProjectLock::isHeld(const QString& lockFilePath, qint64* ownerProcessId, QString* ownerPurpose)
{
    const int fd = ::open(QFile::encodeName(lockFilePath).constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    struct flock lock = wholeFile(F_WRLCK);
    const bool held = fcntl(fd, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    if (held)
        readOwner(fd, ownerProcessId, ownerPurpose);
    ::close(fd);
    return held;
}
