// The per-host gate of the web rules' checks: places in flight per host, hosts apart, the
// spacing of a rate, and waits that end when the crawl stops.

#include "fetch/HostGate.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

const QUrl kHostA(QStringLiteral("http://a.example.org/one.png"));
const QUrl kHostAOtherPath(QStringLiteral("http://A.example.org:80/two/three.css?x"));
const QUrl kHostB(QStringLiteral("http://b.example.org/one.png"));
const QUrl kHostAOtherPort(QStringLiteral("http://a.example.org:8080/one.png"));

long long millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

// Threads that each hold a place for a while; answers the most held at once.
int mostHeldAtOnce(HostGate& gate, const std::vector<QUrl>& urls, std::chrono::milliseconds hold)
{
    std::atomic<int> held{0}, most{0};
    std::vector<std::thread> threads;
    for (const QUrl& url : urls)
        threads.emplace_back([&, url] {
            if (!gate.acquire(url, nullptr))
                return;
            const int now = ++held;
            int seen = most.load();
            while (now > seen && !most.compare_exchange_weak(seen, now)) {
            }
            std::this_thread::sleep_for(hold);
            --held;
            gate.release(url);
        });
    for (auto& thread : threads)
        thread.join();
    return most;
}

} // namespace

TEST(HostGate, AHostIsKeyedBySchemeHostAndPort)
{
    EXPECT_EQ(HostGate::keyOf(kHostA), QStringLiteral("http://a.example.org:80"));
    EXPECT_EQ(HostGate::keyOf(kHostAOtherPath), QStringLiteral("http://a.example.org:80"));
    EXPECT_EQ(HostGate::keyOf(QUrl(QStringLiteral("https://a.example.org/x"))), QStringLiteral("https://a.example.org:443"));
    EXPECT_EQ(HostGate::keyOf(kHostAOtherPort), QStringLiteral("http://a.example.org:8080"));
    EXPECT_EQ(HostGate::keyOf(QUrl(QStringLiteral("http://[::1]:8000/x"))), QStringLiteral("http://[::1]:8000"));
}

TEST(HostGate, NoMoreThanThePerHostNumberAreInFlightToOneHost)
{
    HostGate gate(2);
    const std::vector<QUrl> urls(6, kHostA);
    EXPECT_EQ(mostHeldAtOnce(gate, urls, std::chrono::milliseconds(200)), 2);
    EXPECT_TRUE(gate.isFree(kHostA));
}

TEST(HostGate, ThePlacesOfOneHostAreCountedWhateverThePath)
{
    HostGate gate(1);
    const std::vector<QUrl> urls{kHostA, kHostAOtherPath, kHostA, kHostAOtherPath};
    EXPECT_EQ(mostHeldAtOnce(gate, urls, std::chrono::milliseconds(100)), 1);
}

TEST(HostGate, HostsAreIndependent)
{
    HostGate gate(1);
    ASSERT_TRUE(gate.acquire(kHostA, nullptr));
    EXPECT_FALSE(gate.isFree(kHostA));
    EXPECT_TRUE(gate.isFree(kHostB));
    EXPECT_TRUE(gate.isFree(kHostAOtherPort));

    // Taken without waiting, while host A is full.
    const auto start = Clock::now();
    ASSERT_TRUE(gate.acquire(kHostB, nullptr));
    ASSERT_TRUE(gate.acquire(kHostAOtherPort, nullptr));
    EXPECT_LT(millisecondsSince(start), 1000);
    EXPECT_FALSE(gate.isFree(kHostB));

    gate.release(kHostA);
    EXPECT_TRUE(gate.isFree(kHostA));
    EXPECT_FALSE(gate.isFree(kHostB));
    gate.release(kHostB);
    gate.release(kHostAOtherPort);
    EXPECT_TRUE(gate.isFree(kHostB));
}

TEST(HostGate, AWaitingAcquireTakesThePlaceGivenBack)
{
    HostGate gate(1);
    ASSERT_TRUE(gate.acquire(kHostA, nullptr));
    std::atomic<bool> taken{false};
    std::thread waiter([&] {
        taken = gate.acquire(kHostA, nullptr);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_FALSE(taken.load());
    gate.release(kHostA);
    waiter.join();
    EXPECT_TRUE(taken.load());
    EXPECT_FALSE(gate.isFree(kHostA));
    gate.release(kHostA);
}

TEST(HostGate, ARateSpacesTheStartsToOneHost)
{
    HostGate gate(10, 5.0); // one start every 200 ms
    const int starts = 5;
    const auto start = Clock::now();
    for (int i = 0; i < starts; ++i) {
        ASSERT_TRUE(gate.acquire(kHostA, nullptr));
        gate.release(kHostA);
    }
    const auto elapsed = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
    EXPECT_GE(elapsed, (starts - 1) * 200000);
    EXPECT_FALSE(gate.isFree(kHostA)); // the next turn is still to come
}

TEST(HostGate, ARateCountsStartsNotPlaces)
{
    // Starts from several threads at once are spaced too.
    HostGate gate(4, 10.0);
    const int starts = 6;
    const auto start = Clock::now();
    std::vector<std::thread> threads;
    for (int i = 0; i < starts; ++i)
        threads.emplace_back([&] {
            if (gate.acquire(kHostA, nullptr))
                gate.release(kHostA);
        });
    for (auto& thread : threads)
        thread.join();
    const auto elapsed = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start).count();
    EXPECT_GE(elapsed, (starts - 1) * 100000);
}

TEST(HostGate, ARateOnOneHostDoesNotSlowAnother)
{
    HostGate gate(2, 0.5); // one start every two seconds
    ASSERT_TRUE(gate.acquire(kHostA, nullptr));
    gate.release(kHostA);
    EXPECT_FALSE(gate.isFree(kHostA));
    const auto start = Clock::now();
    ASSERT_TRUE(gate.acquire(kHostB, nullptr));
    EXPECT_LT(millisecondsSince(start), 1000);
    gate.release(kHostB);
}

TEST(HostGate, AnAcquireGivesUpOnceCanContinueIsCleared)
{
    HostGate gate(1);
    ASSERT_TRUE(gate.acquire(kHostA, nullptr));
    std::atomic<bool> canContinue{true};
    std::atomic<int> answer{-1};
    std::thread waiter([&] { answer = gate.acquire(kHostA, &canContinue) ? 1 : 0; });
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    EXPECT_EQ(answer.load(), -1);
    const auto cleared = Clock::now();
    canContinue = false;
    waiter.join();
    EXPECT_EQ(answer.load(), 0);
    EXPECT_LT(millisecondsSince(cleared), 2000);

    // The abandoned wait took nothing: once the holder gives its place back, the host is free.
    gate.release(kHostA);
    EXPECT_TRUE(gate.isFree(kHostA));
}

TEST(HostGate, AnAcquireWithTheFlagAlreadyClearedTakesNothingEvenWhenFree)
{
    HostGate gate(1);
    std::atomic<bool> canContinue{false};
    EXPECT_FALSE(gate.acquire(kHostA, &canContinue));
    EXPECT_TRUE(gate.isFree(kHostA));
}

TEST(HostGate, AnAcquireWaitingForTheRateGivesUpOnceCanContinueIsCleared)
{
    HostGate gate(1, 0.1); // one start every ten seconds
    ASSERT_TRUE(gate.acquire(kHostA, nullptr));
    gate.release(kHostA);
    std::atomic<bool> canContinue{true};
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        canContinue = false;
    });
    const auto start = Clock::now();
    EXPECT_FALSE(gate.acquire(kHostA, &canContinue));
    EXPECT_LT(millisecondsSince(start), 5000);
    stopper.join();
}
