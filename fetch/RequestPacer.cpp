#include "fetch/RequestPacer.h"

#include <algorithm>
#include <thread>

RequestPacer::RequestPacer(double rate) : rate_(rate) {}

bool RequestPacer::waitTurn(const std::atomic<bool>* canContinue)
{
    if (rate_ <= 0)
        return true;
    Clock::time_point turn;
    {
        std::lock_guard lock(mutex_);
        turn = std::max(Clock::now(), next_);
        next_ = turn + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1.0 / rate_));
    }
    return sleepFor(std::chrono::duration_cast<std::chrono::milliseconds>(turn - Clock::now()), canContinue);
}

bool RequestPacer::sleepFor(std::chrono::milliseconds duration, const std::atomic<bool>* canContinue)
{
    // A stop must not wait for the end of a long pause.
    constexpr auto kStep = std::chrono::milliseconds(50);
    const auto until = Clock::now() + duration;
    for (;;) {
        if (canContinue && !canContinue->load())
            return false;
        const auto now = Clock::now();
        if (now >= until)
            return true;
        std::this_thread::sleep_for(std::min<Clock::duration>(kStep, until - now));
    }
}
