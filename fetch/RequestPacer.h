#pragma once

#include <atomic>
#include <chrono>
#include <mutex>

// Spaces the requests of one crawl so that at most `rate` start in any second, whichever
// thread sends them: the politeness cap a site's owner may ask for.
class RequestPacer {
public:
    // rate <= 0: no cap.
    explicit RequestPacer(double rate = 0);

    double rate() const { return rate_; }
    // Waits for this request's turn. Answers false, without waiting on, once canContinue
    // (when given) reads false.
    bool waitTurn(const std::atomic<bool>* canContinue);

    // Sleeps for the duration in short steps, answering false as soon as canContinue (when
    // given) reads false.
    static bool sleepFor(std::chrono::milliseconds duration, const std::atomic<bool>* canContinue);

private:
    using Clock = std::chrono::steady_clock;
    double rate_;
    std::mutex mutex_;
    Clock::time_point next_{};
};
