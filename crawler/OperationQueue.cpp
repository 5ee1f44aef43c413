#include "crawler/OperationQueue.h"

OperationQueue::OperationQueue() : worker_([this] { run(); }) {}

OperationQueue::~OperationQueue()
{
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
        pending_.clear();
    }
    wake_.notify_all();
    worker_.join();
}

void OperationQueue::setMaxConcurrentOperationCount(int) {}

void OperationQueue::addOperation(std::shared_ptr<Operation> operation)
{
    if (!operation)
        return;
    {
        std::lock_guard lock(mutex_);
        pending_.push_back(std::move(operation));
    }
    wake_.notify_one();
}

int OperationQueue::operationCount() const
{
    std::lock_guard lock(mutex_);
    return int(pending_.size()) + (running_ ? 1 : 0);
}

void OperationQueue::waitUntilAllOperationsAreFinished()
{
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return pending_.empty() && !running_; });
}

void OperationQueue::run()
{
    for (;;) {
        std::shared_ptr<Operation> operation;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return stopping_ || !pending_.empty(); });
            if (pending_.empty())
                return;
            operation = pending_.front();
            pending_.pop_front();
            running_ = operation;
        }
        operation->main();
        operation->finished_.store(true);
        if (operation->completionBlock_)
            operation->completionBlock_();
        {
            std::lock_guard lock(mutex_);
            running_.reset();
        }
        idle_.notify_all();
    }
}
