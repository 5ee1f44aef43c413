#include "store/RegistryLock.h"

#include "base/DebugTrace.h"

#include <QElapsedTimer>
#include <QFile>
#include <QThread>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

RegistryLock::RegistryLock(const QString& storeFilePath) : path_(lockFilePath(storeFilePath)) {}

RegistryLock::~RegistryLock()
{
    if (fd_ >= 0)
        ::close(fd_);
}

QString RegistryLock::lockFilePath(const QString& storeFilePath)
{
    // Not NAME.lock: no project's lock file can take this name.
    return storeFilePath + QStringLiteral("-lock");
}

bool RegistryLock::lock(int timeoutMs)
{
    if (fd_ >= 0)
        return true;
    const int fd = ::open(QFile::encodeName(path_).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (fd < 0) {
        DebugTrace("RegistryLock: %s cannot be made: %s", qPrintable(path_), std::strerror(errno));
        return true;
    }
    QElapsedTimer timer;
    timer.start();
    for (;;) {
        struct flock whole {};
        whole.l_type = F_WRLCK;
        whole.l_whence = SEEK_SET;
        if (fcntl(fd, F_OFD_SETLK, &whole) == 0) {
            fd_ = fd;
            return true;
        }
        const int error = errno;
        if ((error != EAGAIN && error != EACCES) || timer.elapsed() >= timeoutMs) {
            if (error != EAGAIN && error != EACCES)
                errorString_ = QString::fromLocal8Bit(std::strerror(error));
            ::close(fd);
            return false;
        }
        QThread::msleep(5);
    }
}
