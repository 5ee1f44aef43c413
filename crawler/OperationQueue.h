#pragma once

#include "crawler/Operation.h"

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>

// Runs operations on one worker thread of its own, one at a time, in the order they were
// added: a crawl and the vacuum that follows it never overlap.
class OperationQueue {
public:
    OperationQueue();
    ~OperationQueue();  // waits for the running operation; drops those not started
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;

    // Only one concurrent operation is supported; other values are ignored.
    void setMaxConcurrentOperationCount(int count);
    int maxConcurrentOperationCount() const { return 1; }

    void addOperation(std::shared_ptr<Operation> operation);
    int operationCount() const;

    // Blocks the calling thread; never call it from the thread whose event loop the
    // running operation relays to.
    void waitUntilAllOperationsAreFinished();

private:
    void run();

    mutable std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable idle_;
    std::deque<std::shared_ptr<Operation>> pending_;
    std::shared_ptr<Operation> running_;
    bool stopping_ = false;
    std::thread worker_;
};
