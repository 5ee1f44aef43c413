#include "fetch/EndCondition.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <thread>

TEST(EndCondition, ASignalSentBeforeTheWaitIsNotLost)
{
    EndCondition condition;
    condition.signal();
    auto waiter = std::async(std::launch::async, [&] { condition.wait(); });
    EXPECT_EQ(waiter.wait_for(std::chrono::seconds(5)), std::future_status::ready);
}

TEST(EndCondition, AWaiterWakesWhenTheSignalComesLater)
{
    EndCondition condition;
    auto waiter = std::async(std::launch::async, [&] { condition.wait(); });
    EXPECT_EQ(waiter.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    condition.signal();
    EXPECT_EQ(waiter.wait_for(std::chrono::seconds(5)), std::future_status::ready);
    EXPECT_TRUE(condition.isSignalled());
}
