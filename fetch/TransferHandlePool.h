#pragma once

#include <mutex>
#include <utility>
#include <vector>

// libcurl handles kept between transfers. A handle pair (an easy handle and the multi handle
// that runs it) is used by one transfer, on one thread, at a time; the multi handle holds
// the connection cache, so the next transfer that takes the pair reuses the open connection
// to the same server (keep-alive) instead of opening another.
class TransferHandlePool {
public:
    static TransferHandlePool& shared();
    // The handles still kept at exit are closed with their connections.
    ~TransferHandlePool();

    // A kept pair; false when none is kept.
    bool take(void** easy, void** multi);
    // Resets the easy handle's options and keeps the pair for the next transfer (or closes
    // it when enough are kept).
    void giveBack(void* easy, void* multi);
    // Closes the handles and connections nobody is using.
    void releaseIdle();
    int idleCount();

    // libcurl's global set-up, done once whoever asks first.
    static void initialiseLibcurl();
    // Closes a pair that is not given back.
    static void close(void* easy, void* multi);

private:
    TransferHandlePool() = default;
    static constexpr size_t kMaximumIdle = 16;
    std::mutex mutex_;
    std::vector<std::pair<void*, void*>> idle_;
};
