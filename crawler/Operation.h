#pragma once

#include <atomic>
#include <functional>

// A unit of background work run once by an OperationQueue.
class Operation {
public:
    virtual ~Operation() = default;
    virtual void main() = 0;

    bool isFinished() const { return finished_.load(); }

    // Runs on the queue's thread right after main() has returned.
    void setCompletionBlock(std::function<void()> block) { completionBlock_ = std::move(block); }

private:
    friend class OperationQueue;
    std::function<void()> completionBlock_;
    std::atomic<bool> finished_{false};
};
