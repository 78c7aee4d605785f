#include "platform/linux/ClockBoottime.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <pthread.h>
#include <thread>

namespace orvalen {
namespace {

using namespace std::chrono_literals;

TEST(ClockBoottime, neverGoesBack)
{
    const ClockBoottime clock;
    auto last = clock.now();
    EXPECT_GT(last, 0ns);
    for (int i = 0; i < 10000; ++i) {
        const auto now = clock.now();
        ASSERT_GE(now, last);
        last = now;
    }
}

TEST(ClockBoottime, countsSuspendedTimeToo)
{
    // Never behind the clock that stops in a suspended machine.
    timespec monotonic{};
    ASSERT_EQ(::clock_gettime(CLOCK_MONOTONIC, &monotonic), 0);
    EXPECT_GE(ClockBoottime().now(),
              std::chrono::seconds(monotonic.tv_sec) + std::chrono::nanoseconds(monotonic.tv_nsec));
}

TEST(ClockBoottime, sleepsAtLeastAsLongAsAsked)
{
    ClockBoottime clock;
    const auto before = clock.now();
    clock.sleepFor(20ms);
    EXPECT_GE(clock.now() - before, 20ms);
}

TEST(ClockBoottime, doesNotSleepForNothing)
{
    ClockBoottime clock;
    clock.sleepFor(0ns);
    clock.sleepFor(-1h);
    clock.sleepFor(std::chrono::nanoseconds::min());
}

TEST(ClockBoottime, aSignalDoesNotEndItsSleep)
{
    static std::atomic<int> signals;
    signals = 0;
    struct sigaction counting = {};
    struct sigaction before = {};
    counting.sa_handler = [](int) { ++signals; };
    ASSERT_EQ(::sigaction(SIGUSR1, &counting, &before), 0);

    ClockBoottime clock;
    std::atomic<bool> isAwake = false;
    std::chrono::nanoseconds slept{};
    std::thread sleeper([&] {
        const auto start = clock.now();
        clock.sleepFor(100ms);
        slept = clock.now() - start;
        isAwake = true;
    });
    while (!isAwake)
        ::pthread_kill(sleeper.native_handle(), SIGUSR1);
    sleeper.join();
    ::sigaction(SIGUSR1, &before, nullptr);

    EXPECT_GT(signals, 0);
    EXPECT_GE(slept, 100ms);
}

} // namespace
} // namespace orvalen
