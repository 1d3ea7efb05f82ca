#include "ZmMutex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace {

TEST(ZmMutexThreadTest, AThreadEntersAgainAndLeavesAsOften)
{
    ZmMutex mutex;
    EXPECT_EQ(mutex.EnterMutex(), 1);
    EXPECT_EQ(mutex++, 1);
    std::atomic<bool> entered{false};
    std::thread other([&] {
        mutex.EnterMutex();
        entered = true;
        mutex.LeaveMutex();
    });
    EXPECT_EQ(mutex--, 1);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(entered) << "after one of two";
    bool taken = true;
    std::thread([&] { taken = mutex.try_lock(); }).join();
    EXPECT_FALSE(taken);
    EXPECT_EQ(mutex.LeaveMutex(), 1);
    other.join();
    EXPECT_TRUE(entered);
    std::thread([&] { taken = std::unique_lock<ZmMutex>(mutex, std::try_to_lock).owns_lock(); }).join();
    EXPECT_TRUE(taken);
    const std::lock_guard<ZmMutex> guard(mutex);
}

TEST(ZmMutexThreadTest, OneThreadAtATimeHoldsIt)
{
    constexpr int kThreads = 4, kRounds = 5000;
    ZmMutex mutex;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                const ZmMutexHolder outer(mutex), inner(mutex);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(count, kThreads * kRounds);
}

}  // namespace
