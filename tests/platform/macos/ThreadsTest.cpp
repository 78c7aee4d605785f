#include <gmock/gmock.h>

#include <QCoreApplication>

#include <cerrno>
#include <cstdint>
#include <future>

#include "platform/macos/ClockContinuous.h"
#include "platform/macos/ProcessorsSysctl.h"
#include "platform/macos/ThreadQuality.h"
#include "platform/qt/DispatchQt.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/Threads.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using std::chrono::nanoseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ThreadQuality, namesTheSystemsClasses)
{
    const fake::Kernel kernel;
    setThreadQuality(QualityOfService::userInitiated);
    setThreadQuality(QualityOfService::userInteractive);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre("pthread_set_qos_class_self_np 25 0", "pthread_set_qos_class_self_np 33 0"));
}

TEST(ThreadQuality, aThreadThatMayNotHaveItRunsItsTaskAllTheSame)
{
    fake::Kernel kernel;
    kernel.settingQuality = EPERM;
    int argc = 1;
    char name[] = "test";
    char *argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    DispatchQt dispatch(setThreadQuality);
    std::promise<std::vector<std::string>> calls;
    dispatch.concurrently(QualityOfService::userInteractive, [&] { calls.set_value(fake::takeCalls()); });
    EXPECT_THAT(calls.get_future().get(), ElementsAre("pthread_set_qos_class_self_np 33 0"));
}

TEST(ProcessorsSysctl, countsTheActiveCores)
{
    fake::Kernel kernel;
    for (const int count : {1, 8, 20}) {
        kernel.processors = count;
        EXPECT_EQ(ProcessorsSysctl().activeCount(), count);
        EXPECT_THAT(fake::takeCalls(), ElementsAre("sysctlbyname hw.activecpu 4 null 0"));
    }
}

TEST(ProcessorsSysctl, thereIsOneWhateverTheSystemSays)
{
    fake::Kernel kernel;
    for (const int count : {0, -1, INT32_MIN}) {
        kernel.processors = count;
        EXPECT_EQ(ProcessorsSysctl().activeCount(), 1) << count;
    }
    kernel.processors = 8;
    for (const std::size_t size : {0, 2, 8}) {
        kernel.processorsSize = size;
        EXPECT_EQ(ProcessorsSysctl().activeCount(), 1) << size << " bytes";
    }
    kernel.processorsSize = sizeof(int);
    kernel.askingProcessors = -1;
    EXPECT_EQ(ProcessorsSysctl().activeCount(), 1);
}

class ClockContinuousTest : public ::testing::Test
{
protected:
    static constexpr const char *asking = "clock_gettime 4"; // CLOCK_MONOTONIC_RAW, which Linux counts the same way

    fake::Time time;
    ClockContinuous clock;
};

TEST_F(ClockContinuousTest, tellsTheRawTimeToTheNanosecond)
{
    for (const nanoseconds now : {nanoseconds(0), nanoseconds(1), nanoseconds(36h + 1s - 1ns), nanoseconds::max()}) {
        time.now = now;
        EXPECT_EQ(clock.now(), now);
        EXPECT_THAT(fake::takeCalls(), ElementsAre(asking));
    }
}

TEST_F(ClockContinuousTest, pausesForAsLongAsAsked)
{
    time.now = 10s;
    clock.sleepFor(2s + 250ms);
    EXPECT_EQ(time.now, 12s + 250ms);
    EXPECT_THAT(fake::takeCalls(), ElementsAre(asking, "nanosleep 2 250000000 null", asking));
}

TEST_F(ClockContinuousTest, pausesAgainForWhatASignalHasLeft)
{
    time.longestPause = 100ms;
    clock.sleepFor(250ms);
    EXPECT_EQ(time.now, 250ms);
    EXPECT_THAT(fake::takeCalls(),
                ElementsAre(asking, "nanosleep 0 250000000 null", asking, "nanosleep 0 150000000 null", asking,
                            "nanosleep 0 50000000 null", asking));
}

TEST_F(ClockContinuousTest, doesNotPauseForNothing)
{
    for (const nanoseconds nothing : {nanoseconds(0), nanoseconds(-1h), nanoseconds::min()})
        clock.sleepFor(nothing);
    EXPECT_THAT(fake::takeCalls(), ::testing::Each(asking));
}

TEST_F(ClockContinuousTest, takesTheLongestPauseForWhatItIs)
{
    clock.sleepFor(nanoseconds::max());
    EXPECT_EQ(time.now, nanoseconds::max());
    EXPECT_THAT(fake::takeCalls(), ElementsAre(asking, "nanosleep 9223372036 854775807 null", asking));
}

TEST(ClockContinuous, sleepsAtLeastAsLongAsAskedOnARealClock)
{
    ClockContinuous clock;
    const auto before = clock.now();
    EXPECT_GT(before, 0ns);
    clock.sleepFor(20ms);
    EXPECT_GE(clock.now() - before, 20ms);
    EXPECT_THAT(fake::takeCalls(), IsEmpty());
}

} // namespace
} // namespace orvalen
