#include "fetch/EndCondition.h"

void EndCondition::signal()
{
    std::lock_guard lock(mutex_);
    signalled_ = true;
    condition_.notify_all();
}

void EndCondition::wait()
{
    std::unique_lock lock(mutex_);
    condition_.wait(lock, [this] { return signalled_; });
}

bool EndCondition::isSignalled() const
{
    std::lock_guard lock(mutex_);
    return signalled_;
}
