#include "crawler/MainThread.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace MainThread {

namespace {
// A crawl with a window hands the main thread about seven calls a page, plus one for each
// anchor and two or three more for each link to the site (some forty for a page of ten
// such links), each a round trip through the event queue. Instead, once woken, the main thread stays in drain() and takes the worker's
// calls one after the other for as long as they come close together, and goes back to its
// event loop at least every few milliseconds (the window stays responsive). Both sides
// sleep on a condition while they wait: nothing spins, the cores stay free for the fetches
// and the web server.
struct Channel {
    std::mutex callers;  // one caller waiting at a time
    std::mutex mutex;
    std::condition_variable toMain;
    std::condition_variable toWorker;
    const std::function<void()>* request = nullptr;  // guarded by mutex
    bool finished = false;                           // guarded by mutex
    bool draining = false;                           // guarded by mutex
};

Channel& channel()
{
    static Channel c;
    return c;
}

constexpr auto kIdleWait = std::chrono::microseconds(500);
constexpr qint64 kMaxDrainMs = 10;

void drain()
{
    Channel& c = channel();
    QElapsedTimer since;
    since.start();
    std::unique_lock lock(c.mutex);
    for (;;) {
        if (!c.request) {
            if (since.elapsed() >= kMaxDrainMs
                || !c.toMain.wait_for(lock, kIdleWait, [&] { return c.request != nullptr; })) {
                c.draining = false;
                return;
            }
        }
        const std::function<void()>* fn = c.request;
        c.request = nullptr;
        lock.unlock();
        (*fn)();
        lock.lock();
        c.finished = true;
        c.toWorker.notify_one();
    }
}
} // namespace

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
    Channel& c = channel();
    std::lock_guard caller(c.callers);
    std::unique_lock lock(c.mutex);
    c.request = &fn;
    c.finished = false;
    const bool wake = !c.draining;
    c.draining = true;
    if (wake)
        QMetaObject::invokeMethod(QCoreApplication::instance(), [] { drain(); }, Qt::QueuedConnection);
    else
        c.toMain.notify_one();
    c.toWorker.wait(lock, [&] { return c.finished; });
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
