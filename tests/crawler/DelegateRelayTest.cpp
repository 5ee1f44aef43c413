// The typed relay: a call made from a worker thread runs on the main thread or in place, as
// asked, and its result comes back to the caller as the call returned it.
#include "crawler/DelegateRelay.h"
#include "crawler/MainThread.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QString>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace {

// Runs work on a thread of its own while the main thread takes the calls handed to it;
// answers whether work finished in time.
bool runOnWorker(const std::function<void()>& work)
{
    struct State {
        QEventLoop* loop = nullptr;
        std::atomic<bool> finished{false};
    };
    auto state = std::make_shared<State>();
    QEventLoop loop;
    state->loop = &loop;
    std::thread worker([state, &work] {
        work();
        state->finished.store(true);
        MainThread::post([state] {
            if (state->loop)
                state->loop->quit();
        });
    });
    QTimer::singleShot(10000, &loop, [&loop] { loop.quit(); });
    loop.exec();
    state->loop = nullptr;
    const bool inTime = state->finished.load();
    // Let it end: its calls wait for this thread.
    while (!state->finished.load())
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    worker.join();
    return inTime;
}

struct Answer {
    QString text;
    QThread* thread = nullptr;
};

} // namespace

TEST(DelegateRelay, CallFromWorkerRunsOnMainThreadAndReturnsItsTypedResult)
{
    const DelegateRelay relay(false);
    Answer answer;
    std::unique_ptr<int> moved;
    QThread* workerThread = nullptr;
    ASSERT_TRUE(runOnWorker([&] {
        workerThread = QThread::currentThread();
        answer = relay([] { return Answer{QStringLiteral("page %1").arg(7), QThread::currentThread()}; });
        // A result that can only be moved comes back whole.
        moved = relay([] { return std::make_unique<int>(42); });
    }));
    EXPECT_EQ(answer.text, QStringLiteral("page 7"));
    EXPECT_EQ(answer.thread, QCoreApplication::instance()->thread());
    EXPECT_NE(answer.thread, workerThread);
    ASSERT_TRUE(moved);
    EXPECT_EQ(*moved, 42);
}

TEST(DelegateRelay, InPlaceCallRunsOnTheCallersThread)
{
    const DelegateRelay relay(true);
    QThread* calledOn = nullptr;
    QThread* workerThread = nullptr;
    bool result = false;
    ASSERT_TRUE(runOnWorker([&] {
        workerThread = QThread::currentThread();
        result = relay([&] {
            calledOn = QThread::currentThread();
            return true;
        });
    }));
    EXPECT_TRUE(result);
    EXPECT_EQ(calledOn, workerThread);
    EXPECT_NE(calledOn, QCoreApplication::instance()->thread());
}

TEST(DelegateRelay, CallWithoutResultRunsOnMainThreadBeforeTheCallerGoesOn)
{
    const DelegateRelay relay(false);
    QThread* calledOn = nullptr;
    bool seenAfterCall = false;
    ASSERT_TRUE(runOnWorker([&] {
        relay([&] { calledOn = QThread::currentThread(); });
        seenAfterCall = calledOn != nullptr;
    }));
    EXPECT_TRUE(seenAfterCall);
    EXPECT_EQ(calledOn, QCoreApplication::instance()->thread());
}
