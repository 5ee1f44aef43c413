#include "fetch/TransferHandlePool.h"

#include <curl/curl.h>

TransferHandlePool& TransferHandlePool::shared()
{
    static TransferHandlePool pool;
    return pool;
}

TransferHandlePool::~TransferHandlePool()
{
    releaseIdle();
}

bool TransferHandlePool::take(void** easy, void** multi)
{
    std::lock_guard lock(mutex_);
    if (idle_.empty())
        return false;
    *easy = idle_.back().first;
    *multi = idle_.back().second;
    idle_.pop_back();
    return true;
}

void TransferHandlePool::giveBack(void* easy, void* multi)
{
    curl_easy_reset(static_cast<CURL*>(easy));
    {
        std::lock_guard lock(mutex_);
        if (idle_.size() < kMaximumIdle) {
            idle_.emplace_back(easy, multi);
            return;
        }
    }
    close(easy, multi);
}

void TransferHandlePool::releaseIdle()
{
    std::vector<std::pair<void*, void*>> handles;
    {
        std::lock_guard lock(mutex_);
        handles.swap(idle_);
    }
    for (const auto& [easy, multi] : handles)
        close(easy, multi);
}

int TransferHandlePool::idleCount()
{
    std::lock_guard lock(mutex_);
    return int(idle_.size());
}

void TransferHandlePool::initialiseLibcurl()
{
    static std::once_flag once;
    std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

void TransferHandlePool::close(void* easy, void* multi)
{
    if (multi)
        curl_multi_cleanup(static_cast<CURLM*>(multi));
    if (easy)
        curl_easy_cleanup(static_cast<CURL*>(easy));
}
