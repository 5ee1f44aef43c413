#pragma once

#include <condition_variable>
#include <mutex>

// A condition that is signalled once, when a worker ends. A waiter that comes after the
// signal returns at once: the signal is remembered, so no wake-up is lost.
class EndCondition {
public:
    void signal();

    // Blocks until signal() has been called (before or during the wait).
    void wait();

    bool isSignalled() const;

private:
    mutable std::mutex mutex_;
    std::condition_variable condition_;
    bool signalled_ = false;
};
