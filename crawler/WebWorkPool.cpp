#include "crawler/WebWorkPool.h"

#include "fetch/HostGate.h"

#include <chrono>

WebWorkPool::WebWorkPool(int threads)
{
    for (int i = 0; i < qMax(1, threads); ++i)
        threads_.emplace_back([this] { work(); });
}

WebWorkPool::~WebWorkPool()
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        ending_ = true;
        waiting_.clear();
    }
    keepWaiting_ = false;
    wake_.notify_all();
    for (auto& thread : threads_)
        thread.join();
}

void WebWorkPool::submit(const QUrl& url, HostGate* gate, std::function<void()> task)
{
    {
        std::lock_guard<std::mutex> lock(mutex_);
        waiting_.push_back(Task{url, gate, std::move(task)});
    }
    wake_.notify_one();
}

int WebWorkPool::dropWaiting()
{
    std::lock_guard<std::mutex> lock(mutex_);
    const int dropped = int(waiting_.size());
    waiting_.clear();
    return dropped;
}

int WebWorkPool::pending() const
{
    std::lock_guard<std::mutex> lock(mutex_);
    return int(waiting_.size()) + running_;
}

void WebWorkPool::work()
{
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        if (ending_)
            return;
        if (waiting_.empty()) {
            wake_.wait(lock);
            continue;
        }
        // The first task whose host has room; when every host is busy, the first task
        // waits at its gate (it is its turn anyway).
        auto chosen = waiting_.end();
        for (auto it = waiting_.begin(); it != waiting_.end(); ++it) {
            if (!it->gate || it->gate->isFree(it->url)) {
                chosen = it;
                break;
            }
        }
        if (chosen == waiting_.end()) {
            // Every waiting task's host is busy: look again when a task ends or in a moment.
            wake_.wait_for(lock, std::chrono::milliseconds(20));
            continue;
        }
        Task task = std::move(*chosen);
        waiting_.erase(chosen);
        ++running_;
        lock.unlock();
        const bool admitted = !task.gate || task.gate->acquire(task.url, &keepWaiting_);
        if (admitted) {
            try {
                task.run();
            } catch (...) {
                // A task reports its own failures; nothing may escape the thread.
            }
            if (task.gate)
                task.gate->release(task.url);
        }
        lock.lock();
        --running_;
        // A place at a gate came free: one idle thread is enough to take the task that
        // waited for it. Waking them all made every end of a request a stampede.
        if (!waiting_.empty())
            wake_.notify_one();
    }
}
