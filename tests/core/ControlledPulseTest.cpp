#include "core/ControlledPulse.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <limits>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

const double notANumber = std::numeric_limits<double>::quiet_NaN();

/// One pulse on a fake machine, and what it told.
struct ControlledPulseTest : ::testing::Test
{
    test::FakeMachine machine;
    ThermalEngine engine{machine.engineMachine()};
    std::vector<std::pair<double, double>> progress;
    std::vector<double> completions;
    std::chrono::nanoseconds completedAt{-1};

    void startPulse(double target)
    {
        engine.executeControlledPulse(
            target,
            [this](double temperature, double fraction) {
                EXPECT_THAT(completions, IsEmpty()) << "progress after completion";
                progress.emplace_back(temperature, fraction);
            },
            [this](double finalTemp) {
                completions.push_back(finalTemp);
                completedAt = machine.world.now();
            });
    }

    void runPulse(double target)
    {
        startPulse(target);
        machine.world.runUntilIdle();
    }

    /// The first reading, and from then on one reading per sample; the last one stays.
    void readOneByOne(std::vector<SystemThermalData> readings)
    {
        machine.sensors.beforeRead = [this, readings = std::move(readings), next = std::size_t{0}]() mutable {
            const auto &reading = readings[std::min(next++, readings.size() - 1)];
            machine.sensors.set(reading.bridgeTemp, reading.pmuTemp);
        };
    }

    static SystemThermalData reading(double bridge, double pmu) { return {bridge, pmu, 0.0, 0.0, 0.0, 0.0}; }
    static SystemThermalData reading(double bridge) { return reading(bridge, bridge); }

    /// Heaters are tasks that end once the flag has fallen. One that does not end hangs the test.
    void expectHeatersOff()
    {
        EXPECT_FALSE(machine.world.heaters.empty()) << "nothing was ever on";
        for (const auto &heater : machine.world.heaters)
            heater.task();
    }
};

TEST(SpinnerCount, leavesTwoCoresFreeWithinTwoToFour)
{
    EXPECT_EQ(spinnerCount(1), 2);
    EXPECT_EQ(spinnerCount(2), 2);
    EXPECT_EQ(spinnerCount(4), 2);
    EXPECT_EQ(spinnerCount(5), 3);
    EXPECT_EQ(spinnerCount(6), 4);
    EXPECT_EQ(spinnerCount(8), 4);
    EXPECT_EQ(spinnerCount(128), 4);
}

TEST(PulseProgress, isTheFractionOfTheWayWithinZeroToOne)
{
    EXPECT_DOUBLE_EQ(pulseProgress(36.0, 40.0, 38.0), 0.5);
    EXPECT_DOUBLE_EQ(pulseProgress(36.0, 40.0, 35.5), 0.0);
    EXPECT_DOUBLE_EQ(pulseProgress(36.0, 40.0, 41.0), 1.0);
    EXPECT_DOUBLE_EQ(pulseProgress(36.0, 40.0, 36.0), 0.0);
}

TEST(PulseProgress, isZeroWhereItIsNotANumber)
{
    EXPECT_EQ(pulseProgress(36.0, 40.0, notANumber), 0.0);
    EXPECT_EQ(pulseProgress(notANumber, 40.0, 38.0), 0.0);
    EXPECT_EQ(pulseProgress(40.0, 40.0, 40.0), 0.0);
}

TEST(StopTest, stopsAtTheTargetExactly)
{
    const auto at = [](double bridge) { return SystemThermalData(bridge, 0.0, 0.0, 0.0, 0.0, 0.0); };
    EXPECT_TRUE(shouldStopHeating(40.0, at(40.0), 1s));
    EXPECT_FALSE(shouldStopHeating(40.0, at(39.99), 1s));
}

TEST(StopTest, stopsTwoDegreesAboveTheTargetOnThePowerManagementUnit)
{
    const auto at = [](double pmu) { return SystemThermalData(37.0, pmu, 0.0, 0.0, 0.0, 0.0); };
    EXPECT_TRUE(shouldStopHeating(40.0, at(42.0), 1s));
    EXPECT_FALSE(shouldStopHeating(40.0, at(41.99), 1s));
}

TEST(StopTest, stopsAfterFifteenSecondsButNotAtThem)
{
    const SystemThermalData cold;
    EXPECT_FALSE(shouldStopHeating(40.0, cold, 15s));
    EXPECT_TRUE(shouldStopHeating(40.0, cold, 15s + 1ns));
    EXPECT_TRUE(shouldStopHeating(40.0, cold, std::chrono::duration<double>(notANumber)));
}

TEST(StopTest, aReadingThatIsNotANumberLeavesTheTimeToDecide)
{
    const SystemThermalData broken(notANumber, notANumber, 0.0, 0.0, 0.0, 0.0);
    EXPECT_FALSE(shouldStopHeating(40.0, broken, 1s));
    EXPECT_TRUE(shouldStopHeating(40.0, broken, 16s));
}

TEST_F(ControlledPulseTest, returnsAtOnceAndCallsBackLater)
{
    machine.sensors.set(41.0);
    startPulse(40.0);
    EXPECT_THAT(completions, IsEmpty());
    EXPECT_EQ(machine.sensors.reads, 0);
}

TEST_F(ControlledPulseTest, aWarmBridgeCompletesAtOnceWithoutWorkersOrProgress)
{
    for (const double warm : {40.0, 41.0}) {
        completions.clear();
        machine.sensors.set(warm);
        startPulse(40.0);
        machine.world.settle();
        EXPECT_THAT(completions, ElementsAre(warm));
        EXPECT_THAT(progress, IsEmpty());
        EXPECT_THAT(machine.world.heaters, IsEmpty());
    }
}

TEST_F(ControlledPulseTest, heatsUntilTheTargetAndReportsEverySample)
{
    readOneByOne({reading(36.0), reading(38.0), reading(35.5), reading(41.0)});
    runPulse(40.0);
    EXPECT_THAT(progress, ElementsAre(Pair(38.0, 0.5), Pair(35.5, 0.0), Pair(41.0, 1.0)));
    EXPECT_THAT(completions, ElementsAre(41.0));
    EXPECT_EQ(completedAt, 750ms);
    expectHeatersOff();
}

TEST_F(ControlledPulseTest, stopsAtThePowerManagementUnitsLimit)
{
    readOneByOne({reading(36.0), reading(37.0, 42.0)});
    runPulse(40.0);
    EXPECT_THAT(progress, ElementsAre(Pair(37.0, 0.25)));
    EXPECT_THAT(completions, ElementsAre(37.0));
}

TEST_F(ControlledPulseTest, thePowerManagementUnitJustBelowItsLimitDoesNotStopIt)
{
    readOneByOne({reading(36.0), reading(37.0, 41.99), reading(40.0)});
    runPulse(40.0);
    EXPECT_THAT(completions, ElementsAre(40.0));
    EXPECT_THAT(progress, SizeIs(2));
}

TEST_F(ControlledPulseTest, aTargetNeverReachedEndsAtTheFirstSampleAfterFifteenSeconds)
{
    readOneByOne({reading(30.0), reading(38.2)});
    runPulse(40.0);
    EXPECT_THAT(completions, ElementsAre(38.2));
    EXPECT_EQ(completedAt, 15250ms);
    EXPECT_THAT(progress, SizeIs(61));
    expectHeatersOff();
}

TEST_F(ControlledPulseTest, blindSensorsEndByTheTimeOutAtZero)
{
    machine.sensors.readings = std::nullopt;
    runPulse(40.0);
    EXPECT_THAT(completions, ElementsAre(0.0));
    EXPECT_EQ(completedAt, 15250ms);
    EXPECT_THAT(progress, ::testing::Each(Pair(0.0, 0.0)));
}

TEST_F(ControlledPulseTest, sensorsThatVanishInMidPulseEndByTheTimeOut)
{
    readOneByOne({reading(36.0), reading(38.0)});
    machine.world.at(2s, [this] {
        machine.sensors.beforeRead.clear();
        machine.sensors.readings = std::nullopt;
    });
    runPulse(40.0);
    EXPECT_THAT(completions, ElementsAre(0.0));
    EXPECT_EQ(completedAt, 15250ms);
}

TEST_F(ControlledPulseTest, aReaderReturningNotANumberEndsByTheTimeOut)
{
    struct BrokenEngine : test::FakeThermalEngine
    {
        using FakeThermalEngine::FakeThermalEngine;
        SystemThermalData readSensors() override { return {notANumber, notANumber, 0.0, 0.0, 0.0, 0.0}; }
        void executeControlledPulse(double target, ProgressCallback progress, CompletionCallback completion) override
        {
            ThermalEngine::executeControlledPulse(target, std::move(progress), std::move(completion));
        }
    } broken(machine);
    int completed = 0;
    broken.executeControlledPulse(
        40.0, [](double, double fraction) { EXPECT_EQ(fraction, 0.0); }, [&](double) { ++completed; });
    machine.world.runUntilIdle();
    EXPECT_EQ(completed, 1);
    EXPECT_FALSE(machine.world.heaters.empty());
    expectHeatersOff();
}

TEST_F(ControlledPulseTest, aThrowingReaderEndsByTheTimeOut)
{
    struct ThrowingEngine : ThermalEngine
    {
        using ThermalEngine::ThermalEngine;
        SystemThermalData readSensors() override { throw std::runtime_error("broken"); }
    } throwing(machine.engineMachine());
    std::vector<double> completed;
    int samples = 0;
    throwing.executeControlledPulse(
        40.0, [&](double, double) { ++samples; }, [&](double t) { completed.push_back(t); });
    machine.world.runUntilIdle();
    EXPECT_THAT(completed, ElementsAre(0.0));
    EXPECT_EQ(samples, 61);
    expectHeatersOff();
}

TEST_F(ControlledPulseTest, readsThroughTheOverridableSlot)
{
    struct WarmEngine : ThermalEngine
    {
        using ThermalEngine::ThermalEngine;
        SystemThermalData readSensors() override { return {55.0, 0.0, 0.0, 0.0, 0.0, 0.0}; }
    } warm(machine.engineMachine());
    std::vector<double> completed;
    warm.executeControlledPulse(
        40.0, [](double, double) {}, [&](double t) { completed.push_back(t); });
    machine.world.runUntilIdle();
    EXPECT_THAT(completed, ElementsAre(55.0));
    EXPECT_EQ(machine.sensors.reads, 0);
}

TEST_F(ControlledPulseTest, aReadThatHangsIsCutOffAtTwentySecondsAndCompletesOnceWithoutIt)
{
    readOneByOne({reading(36.0), reading(37.0)});
    std::chrono::nanoseconds readReturned{};
    std::size_t progressAtCutOff = 0;
    machine.world.at(1s, [&] {
        machine.sensors.beforeRead = [&] {
            machine.sensors.beforeRead.clear();
            machine.world.sleepFor(1h);
            readReturned = machine.world.now();
        };
    });
    machine.world.at(20s + 1ns, [&] {
        EXPECT_THAT(completions, ElementsAre(37.0));
        progressAtCutOff = progress.size();
        expectHeatersOff();
    });
    runPulse(40.0);
    EXPECT_EQ(completedAt, 20s);
    EXPECT_GT(readReturned, 1h);
    EXPECT_THAT(completions, SizeIs(1));
    EXPECT_EQ(progress.size(), progressAtCutOff);
    EXPECT_GT(progressAtCutOff, 0u);
}

TEST_F(ControlledPulseTest, aFirstReadThatHangsStartsNoHeaterThatStays)
{
    machine.sensors.set(30.0);
    machine.sensors.beforeRead = [this] {
        machine.sensors.beforeRead.clear();
        machine.world.sleepFor(1min);
    };
    runPulse(40.0);
    EXPECT_THAT(completions, SizeIs(1));
    EXPECT_EQ(completedAt, 20s);
    EXPECT_THAT(machine.world.heaters, IsEmpty());
    EXPECT_THAT(progress, IsEmpty());
}

TEST_F(ControlledPulseTest, timeSpentSuspendedEndsThePulseAtTheNextSample)
{
    machine.sensors.beforeRead = [this, reads = 0]() mutable {
        machine.sensors.set(reads == 0 ? 36.0 : 37.0);
        if (++reads == 3)
            machine.world.jump(8h);
    };
    runPulse(40.0);
    EXPECT_THAT(completions, SizeIs(1));
    EXPECT_EQ(machine.sensors.reads, 3);
    expectHeatersOff();
}

TEST_F(ControlledPulseTest, withoutAThreadToBeHadItCompletesWithoutHeating)
{
    machine.sensors.set(30.0);
    machine.world.threadsLeft = 0;
    runPulse(40.0);
    EXPECT_THAT(completions, SizeIs(1));
    EXPECT_THAT(machine.world.heaters, IsEmpty());
    EXPECT_EQ(machine.sensors.reads, 0) << "without its dead-man a pulse does not begin";
}

TEST_F(ControlledPulseTest, withoutAThreadForAWorkerItEndsWhatItStarted)
{
    machine.sensors.set(30.0);
    constexpr int guards = 2; // the dead-man and the supervisor
    for (int workers = 1; workers < 5; ++workers) {
        completions.clear();
        machine.world.heaters.clear();
        machine.world.threadsLeft = guards + workers;
        const auto start = machine.world.now();
        runPulse(40.0);
        EXPECT_THAT(completions, ElementsAre(30.0));
        EXPECT_EQ(completedAt, start) << "at once";
        EXPECT_EQ(machine.world.heaters.size(), static_cast<std::size_t>(workers));
        expectHeatersOff();
    }
}

TEST_F(ControlledPulseTest, withoutAThreadForTheGraphicsWorkerOnlySpinnersHeat)
{
    struct NoneForGraphics : test::VirtualWorld
    {
        void concurrently(QualityOfService quality, Task task) override
        {
            if (quality == QualityOfService::userInteractive)
                throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
            VirtualWorld::concurrently(quality, std::move(task));
        }
    } world;
    ThermalEngine withoutGraphics(
        {machine.sensors, machine.idle, machine.power, machine.graphics, machine.processors, world, world});
    readOneByOne({reading(30.0), reading(35.0), reading(40.0)});
    std::vector<double> completed;
    withoutGraphics.executeControlledPulse(
        40.0, [this](double, double fraction) { progress.emplace_back(0.0, fraction); },
        [&](double t) { completed.push_back(t); });
    world.runUntilIdle();
    EXPECT_THAT(world.heaters, SizeIs(4));
    EXPECT_THAT(progress, SizeIs(2));
    EXPECT_THAT(completed, ElementsAre(40.0));
}

TEST_F(ControlledPulseTest, aCompletionThatCouldNotBePostedIsPostedByTheDeadMan)
{
    struct ForgetfulMain : test::VirtualWorld
    {
        int failures = 0;
        void onMain(Task task) override
        {
            if (failures-- > 0)
                throw std::bad_alloc();
            VirtualWorld::onMain(std::move(task));
        }
    } world;
    ThermalEngine forgetful(
        {machine.sensors, machine.idle, machine.power, machine.graphics, machine.processors, world, world});
    machine.sensors.set(45.0);
    int completed = 0;
    forgetful.executeControlledPulse(
        40.0, [](double, double) {}, [&](double) { ++completed; });
    world.failures = 1;
    EXPECT_THROW(world.settle(), std::bad_alloc); // a real background thread swallows it
    EXPECT_EQ(completed, 0);
    world.runUntilIdle();
    EXPECT_EQ(completed, 1);
    EXPECT_EQ(world.now(), 20s);
}

TEST_F(ControlledPulseTest, startsItsSpinnersOnItsPrivateQueueAndOneGraphicsWorker)
{
    machine.processors.cores = 5;
    readOneByOne({reading(30.0), reading(40.0)});
    runPulse(40.0);
    int onQueue = 0;
    int onGlobal = 0;
    for (const auto &heater : machine.world.heaters)
        heater.queue == "orvalen.pulse" ? ++onQueue : ++onGlobal;
    EXPECT_EQ(onQueue, 3);
    EXPECT_EQ(onGlobal, 1);
}

TEST_F(ControlledPulseTest, withoutAGraphicsDeviceOnlySpinnersHeat)
{
    machine.graphics.hasDevice = false;
    readOneByOne({reading(30.0), reading(30.0), reading(40.0)});
    machine.world.at(1ms, [this] { machine.world.heaters.front().task(); }); // ends while the others heat
    runPulse(40.0);
    EXPECT_THAT(machine.world.heaters, SizeIs(1 + 4));
    EXPECT_THAT(machine.graphics.bufferSizes, IsEmpty());
    EXPECT_THAT(completions, ElementsAre(40.0));
}

TEST_F(ControlledPulseTest, aGraphicsDeviceThatThrowsIsNone)
{
    struct ThrowingGraphics : GraphicsCopies
    {
        std::unique_ptr<GraphicsQueue> openDefaultQueue() override { throw std::runtime_error("driver"); }
    } throwing;
    auto parts = machine.engineMachine();
    ThermalEngine withoutGraphics({parts.temperatureSensors, parts.inputIdleTime, parts.powerSources, throwing,
                                   parts.processors, parts.dispatch, parts.clock});
    readOneByOne({reading(30.0), reading(30.0), reading(40.0)});
    machine.world.at(1ms, [this] { EXPECT_NO_THROW(machine.world.heaters.front().task()); });
    std::vector<double> completed;
    withoutGraphics.executeControlledPulse(
        40.0, [](double, double) {}, [&](double t) { completed.push_back(t); });
    machine.world.runUntilIdle();
    EXPECT_THAT(completed, ElementsAre(40.0));
    EXPECT_THAT(machine.world.heaters, SizeIs(1 + 4));
}

TEST_F(ControlledPulseTest, aGraphicsWorkerThatComesAfterTheEndOpensNoDevice)
{
    readOneByOne({reading(30.0), reading(40.0)});
    bool isOpened = false;
    machine.graphics.beforeOpen = [&] { isOpened = true; };
    runPulse(40.0);
    machine.world.heaters.front().task();
    EXPECT_FALSE(isOpened);
}

TEST_F(ControlledPulseTest, theGraphicsWorkerCopiesThirtyTwoMebibytesUntilTheFlagFalls)
{
    EngineAtomicFlag flag;
    machine.graphics.beforeCopy = [&] {
        if (machine.graphics.copies == 2)
            flag.setValue(false);
    };
    copyGraphicsMemory(*machine.graphics.openDefaultQueue(), flag);
    EXPECT_EQ(machine.graphics.copies, 3);
    EXPECT_TRUE(machine.graphics.copiedWell);
    EXPECT_THAT(machine.graphics.bufferSizes, ElementsAre(33'554'432u, 33'554'432u));
}

TEST_F(ControlledPulseTest, theGraphicsWorkerWithoutBuffersCopiesNothingAndEndsWithTheFlag)
{
    EngineAtomicFlag flag;
    for (const std::size_t available : {0u, 1u}) {
        flag.setValue(true);
        machine.graphics.bufferSizes = {};
        machine.graphics.buffersAvailable = available;
        std::thread stopper([&] { flag.setValue(false); });
        copyGraphicsMemory(*machine.graphics.openDefaultQueue(), flag);
        stopper.join();
        EXPECT_EQ(machine.graphics.copies, 0);
        EXPECT_EQ(machine.graphics.bufferSizes.size(), 2u) << "both are asked for";
    }
}

TEST_F(ControlledPulseTest, aGraphicsCopyThatThrowsEndsTheGraphicsWorkerAlone)
{
    machine.graphics.beforeCopy = [] { throw std::runtime_error("device lost"); };
    readOneByOne({reading(30.0), reading(31.0)});
    machine.world.at(1s, [this] { machine.world.heaters.front().task(); });
    runPulse(40.0);
    EXPECT_EQ(machine.graphics.bufferSizes.size(), 2u);
    EXPECT_EQ(completedAt, 15250ms);
}

TEST_F(ControlledPulseTest, theTemperatureIsTheNewestWhenTheMainThreadGetsToIt)
{
    readOneByOne({reading(30.0), reading(31.0), reading(35.0), reading(40.0)});
    std::vector<Task> delayed;
    struct LateMain : Dispatch
    {
        LateMain(test::VirtualWorld &world, std::vector<Task> &delayed) : world(world), delayed(delayed) {}
        void onMain(Task task) override { delayed.push_back(std::move(task)); }
        void onMainAfter(std::chrono::milliseconds delay, Task task) override
        {
            world.onMainAfter(delay, std::move(task));
        }
        std::unique_ptr<RepeatingTask> repeatOnMain(std::chrono::milliseconds period, Task task) override
        {
            return world.repeatOnMain(period, std::move(task));
        }
        void concurrently(QualityOfService q, Task task) override { world.concurrently(q, std::move(task)); }
        void concurrentlyAfter(std::chrono::milliseconds delay, Task task) override
        {
            world.concurrentlyAfter(delay, std::move(task));
        }
        std::unique_ptr<ConcurrentQueue> makeConcurrentQueue(const std::string &label) override
        {
            return world.makeConcurrentQueue(label);
        }
        test::VirtualWorld &world;
        std::vector<Task> &delayed;
    } late(machine.world, delayed);
    ThermalEngine busy(
        {machine.sensors, machine.idle, machine.power, machine.graphics, machine.processors, late, machine.world});
    busy.executeControlledPulse(
        40.0, [this](double temperature, double fraction) { progress.emplace_back(temperature, fraction); },
        [this](double finalTemp) { completions.push_back(finalTemp); });
    machine.world.runUntilIdle();
    for (const auto &task : delayed)
        task();
    EXPECT_THAT(progress, ElementsAre(Pair(40.0, 0.1), Pair(40.0, 0.5), Pair(40.0, 1.0)));
    EXPECT_THAT(completions, ElementsAre(40.0));
}

} // namespace
} // namespace orvalen
