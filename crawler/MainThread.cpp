#include "crawler/MainThread.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMetaObject>
#include <QThread>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace MainThread {

namespace {
// A crawl hands some forty calls a page to the main thread, each a round trip through the
// event queue with two sleeping hand-overs. Instead, once woken, the main thread stays in
// drain() and takes the worker's calls one after the other for as long as they come close
// together, and goes back to its event loop at least every few milliseconds (the window
// stays responsive). Each side looks for the other's answer a few microseconds before it
// goes to sleep: when both run on cores of their own the answer is usually there by then.
struct Channel {
    std::mutex callers;  // one caller waiting at a time
    std::mutex mutex;
    std::condition_variable toMain;
    std::condition_variable toWorker;
    const std::function<void()>* request = nullptr;  // guarded by mutex
    std::atomic<bool> hasRequest{false};
    std::atomic<bool> finished{false};
    bool draining = false;                           // guarded by mutex
};

Channel& channel()
{
    static Channel c;
    return c;
}

constexpr auto kIdleWait = std::chrono::microseconds(500);
constexpr qint64 kMaxDrainMs = 10;
constexpr auto kSpin = std::chrono::microseconds(30);

template <typename Ready>
bool briefly(Ready ready)
{
    const auto until = std::chrono::steady_clock::now() + kSpin;
    for (;;) {
        for (int i = 0; i < 64; ++i) {
            if (ready())
                return true;
#if defined(__x86_64__) || defined(__i386__)
            __builtin_ia32_pause();
#endif
        }
        if (std::chrono::steady_clock::now() >= until)
            return ready();
    }
}

void drain()
{
    Channel& c = channel();
    QElapsedTimer since;
    since.start();
    for (;;) {
        briefly([&] { return c.hasRequest.load(std::memory_order_acquire); });
        std::unique_lock lock(c.mutex);
        if (!c.request) {
            if (since.elapsed() >= kMaxDrainMs
                || !c.toMain.wait_for(lock, kIdleWait, [&] { return c.request != nullptr; })) {
                c.draining = false;
                return;
            }
        }
        const std::function<void()>* fn = c.request;
        c.request = nullptr;
        c.hasRequest.store(false, std::memory_order_relaxed);
        lock.unlock();
        (*fn)();
        lock.lock();
        c.finished.store(true, std::memory_order_release);
        lock.unlock();
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
    c.finished.store(false, std::memory_order_relaxed);
    c.hasRequest.store(true, std::memory_order_release);
    const bool wake = !c.draining;
    c.draining = true;
    lock.unlock();
    if (wake)
        QMetaObject::invokeMethod(QCoreApplication::instance(), [] { drain(); }, Qt::QueuedConnection);
    else
        c.toMain.notify_one();
    if (briefly([&] { return c.finished.load(std::memory_order_acquire); }))
        return;
    lock.lock();
    c.toWorker.wait(lock, [&] { return c.finished.load(std::memory_order_acquire); });
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
