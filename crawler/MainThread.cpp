#include "crawler/MainThread.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>

namespace MainThread {

bool isMainThread()
{
    QCoreApplication* app = QCoreApplication::instance();
    return !app || QThread::currentThread() == app->thread();
}

void performAndWait(const std::function<void()>& fn)
{
    if (isMainThread()) {
        fn();
        return;
    }
    QMetaObject::invokeMethod(QCoreApplication::instance(), [&fn] { fn(); }, Qt::BlockingQueuedConnection);
}

void post(std::function<void()> fn)
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!app) {
        fn();
        return;
    }
    QMetaObject::invokeMethod(app, std::move(fn), Qt::QueuedConnection);
}

} // namespace MainThread
