#include "core/EngineAtomicFlag.h"

#include <gtest/gtest.h>

#include <atomic>
#include <mutex>
#include <thread>
#include <vector>

namespace orvalen {
namespace {

TEST(EngineAtomicFlag, isTrueUntilItIsCleared)
{
    EngineAtomicFlag flag;
    EXPECT_TRUE(flag.value());
    flag.setValue(false);
    EXPECT_FALSE(flag.value());
}

TEST(EngineAtomicFlag, isSeenByEveryThreadThatSpinsOnIt)
{
    EngineAtomicFlag flag;
    std::vector<std::thread> spinners;
    for (int i = 0; i < 4; ++i)
        spinners.emplace_back([&flag] {
            while (flag.value()) {
            }
        });
    flag.setValue(false);
    for (auto &spinner : spinners)
        spinner.join();
}

/// The lock as it is, and one that parks at the first occasion.
template <typename Lock>
class SpinThenParkLockTest : public ::testing::Test
{
};
using Locks = ::testing::Types<SpinThenParkLockOf<>, SpinThenParkLockOf<1>>;
TYPED_TEST_SUITE(SpinThenParkLockTest, Locks);

TYPED_TEST(SpinThenParkLockTest, letsOneThreadInAtATime)
{
    TypeParam lock;
    long counter = 0; // not atomic: the lock is what protects it
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int j = 0; j < 20'000; ++j) {
                const std::lock_guard guard(lock);
                ++counter;
            }
        });
    for (auto &thread : threads)
        thread.join();
    EXPECT_EQ(counter, 80'000);
}

TYPED_TEST(SpinThenParkLockTest, wakesEverybodyWhoWaitsForIt)
{
    for (int round = 0; round < 20; ++round) {
        TypeParam lock;
        std::atomic<int> through = 0;
        lock.lock();
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i)
            threads.emplace_back([&] {
                const std::lock_guard guard(lock);
                ++through;
            });
        while (lock.waitingThreads() < 3)
            std::this_thread::yield();
        EXPECT_EQ(through, 0);
        lock.unlock();
        for (auto &thread : threads)
            thread.join();
        EXPECT_EQ(through, 3);
        EXPECT_EQ(lock.waitingThreads(), 0);
    }
}

} // namespace
} // namespace orvalen
