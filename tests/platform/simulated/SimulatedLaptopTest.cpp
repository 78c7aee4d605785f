#include "platform/simulated/SimulatedLaptop.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <thread>

#include "platform/simulated/GraphicsCopiesSimulated.h"
#include "platform/simulated/InputIdleTimeSimulated.h"
#include "platform/simulated/PowerSourcesSimulated.h"
#include "platform/simulated/ProcessorTime.h"
#include "platform/simulated/TemperatureSensorsSimulated.h"
#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using std::chrono::seconds;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// What a laptop reads after half a minute in which the process kept so many of the host's cores busy.
std::vector<TemperatureReading> afterHalfAMinute(int hostCores, int busyCores)
{
    test::VirtualWorld world;
    test::FakeProcessors processors;
    processors.cores = hostCores;
    std::chrono::nanoseconds used{0};
    SimulatedLaptop laptop({world, processors, [&used] { return used; }}, 20.0);
    laptop.setBatteryPercent(100.0); // nothing to charge: that power depends on the level, and so on who looks when
    world.advance(seconds(30));
    used += busyCores * seconds(30);
    return laptop.trueReadings();
}

void expectSame(const std::vector<TemperatureReading> &some, const std::vector<TemperatureReading> &others)
{
    ASSERT_EQ(some.size(), others.size());
    for (std::size_t i = 0; i < some.size(); ++i)
        EXPECT_NEAR(some[i].celsius, others[i].celsius, 1e-6) << some[i].product;
}

class SimulatedLaptopTest : public testing::Test
{
protected:
    test::VirtualWorld world;
    test::FakeProcessors processors; // eight
    std::chrono::nanoseconds used{0};
    SimulatedLaptop laptop{{world, processors, [this] { return used; }}, 20.0};

    double celsius(std::string_view product)
    {
        for (const auto &reading : laptop.sensorReadings())
            if (reading.product == product)
                return reading.celsius;
        ADD_FAILURE() << "no " << product;
        return 0.0;
    }

    double trueCelsius(std::string_view product)
    {
        for (const auto &reading : laptop.trueReadings())
            if (reading.product == product)
                return reading.celsius;
        ADD_FAILURE() << "no " << product;
        return 0.0;
    }

    // One look every quarter second, as during a pulse.
    void work(std::chrono::seconds duration, double busyCores, std::size_t bytesPerSecond = 0)
    {
        for (auto end = world.now() + duration; world.now() < end;) {
            world.advance(std::chrono::milliseconds(250));
            used += std::chrono::nanoseconds(static_cast<std::int64_t>(busyCores * 0.25e9));
            laptop.countCopy(bytesPerSecond / 4);
            (void)laptop.trueReadings();
        }
    }
};

TEST_F(SimulatedLaptopTest, startsAsColdAsTheRoom)
{
    EXPECT_NEAR(celsius("pACC MTR Temp Sensor2"), 20.0, 1.5);
    EXPECT_NEAR(celsius("gas gauge battery"), 20.0, 1.5);
}

TEST_F(SimulatedLaptopTest, warmsUpByItselfWhileItIsOn)
{
    world.advance(hours(3));
    EXPECT_GT(celsius("PMU tdie1"), 35.0);
}

TEST_F(SimulatedLaptopTest, processorTimeOfTheProcessHeatsIt)
{
    world.advance(hours(3));
    const double rest = celsius("pACC MTR Temp Sensor2");
    work(seconds(60), 8.0);
    EXPECT_GT(celsius("pACC MTR Temp Sensor2"), rest + 12.0);
}

TEST(SimulatedLaptopOnAHost, twoBusyCoresOfTwoHeatLikeEightOfEight)
{
    expectSame(afterHalfAMinute(2, 2), afterHalfAMinute(8, 8));
}

TEST(SimulatedLaptopOnAHost, fourBusyCoresOfManyHeatLikeFourOfEight)
{
    expectSame(afterHalfAMinute(64, 4), afterHalfAMinute(8, 4));
}

TEST_F(SimulatedLaptopTest, howOftenSomebodyLooksMakesNoDifference)
{
    laptop.setBatteryPercent(100.0);
    for (int i = 0; i < 3000; ++i) {
        world.advance(std::chrono::milliseconds(10));
        used += std::chrono::milliseconds(80);
        (void)laptop.trueReadings();
    }
    expectSame(laptop.trueReadings(), afterHalfAMinute(8, 8));
}

TEST_F(SimulatedLaptopTest, hoursOfSleepAreHoursOfRest)
{
    work(seconds(60), 8.0, std::size_t{1} << 30);
    const double hot = trueCelsius("PMU tdie1");
    world.advance(hours(10));
    const double rested = trueCelsius("PMU tdie1");
    EXPECT_LT(rested, hot);
    world.advance(hours(10));
    EXPECT_NEAR(trueCelsius("PMU tdie1"), rested, 0.1);
}

TEST_F(SimulatedLaptopTest, aColderRoomMakesAColderLaptop)
{
    world.advance(hours(6));
    const double before = trueCelsius("PMU tdie1");
    laptop.setRoomCelsius(10.0);
    EXPECT_NEAR(trueCelsius("PMU tdie1"), before, 0.01);
    world.advance(hours(6));
    EXPECT_NEAR(trueCelsius("PMU tdie1"), before - 10.0, 0.5);
    EXPECT_EQ(laptop.roomCelsius(), 10.0);
}

TEST_F(SimulatedLaptopTest, coolsDownAtOnceWhenAsked)
{
    work(seconds(30), 8.0);
    laptop.coolDown();
    EXPECT_NEAR(celsius("PMU tdie1"), 20.0, 1.5);
}

TEST_F(SimulatedLaptopTest, onTheChargerTheBatteryFillsUpAndStops)
{
    laptop.setBatteryPercent(50.0);
    world.advance(hours(1));
    const double afterAnHour = laptop.batteryPercent();
    EXPECT_GT(afterAnHour, 70.0);
    EXPECT_LT(afterAnHour, 100.0);
    world.advance(hours(20));
    EXPECT_GT(laptop.batteryPercent(), 99.0);
    EXPECT_LE(laptop.batteryPercent(), 100.0);
}

TEST_F(SimulatedLaptopTest, offTheChargerTheBatteryDrainsFasterUnderLoadAndNeverBelowNothing)
{
    laptop.setBatteryPercent(50.0);
    laptop.setChargerPluggedIn(false);
    world.advance(minutes(5));
    const double restDrain = 50.0 - laptop.batteryPercent();
    EXPECT_GT(restDrain, 0.0);
    const double before = laptop.batteryPercent();
    work(minutes(5), 8.0);
    EXPECT_GT(before - laptop.batteryPercent(), 1.2 * restDrain);
    world.advance(hours(100));
    EXPECT_EQ(laptop.batteryPercent(), 0.0);
}

TEST_F(SimulatedLaptopTest, chargingWarmsThePorts)
{
    world.advance(hours(10));
    laptop.setBatteryPercent(100.0);
    world.advance(hours(10));
    const double rest = trueCelsius("PMU tdev7");
    laptop.setBatteryPercent(20.0);
    world.advance(minutes(20));
    EXPECT_GT(trueCelsius("PMU tdev7"), rest + 5.0);
}

TEST_F(SimulatedLaptopTest, theLevelIsKeptBetweenEmptyAndFull)
{
    laptop.setBatteryPercent(130.0);
    EXPECT_EQ(laptop.batteryPercent(), 100.0);
    laptop.setBatteryPercent(-3.0);
    EXPECT_EQ(laptop.batteryPercent(), 0.0);
}

TEST_F(SimulatedLaptopTest, withAllSensorsGoneThereAreNone)
{
    laptop.setFaults({.allGone = true});
    EXPECT_THAT(laptop.sensorReadings(), IsEmpty());
    EXPECT_THAT(laptop.trueReadings(), SizeIs(57));
    laptop.setFaults({});
    EXPECT_THAT(laptop.sensorReadings(), SizeIs(57));
}

TEST_F(SimulatedLaptopTest, aStuckSensorKeepsWhatItReadWhenItGotStuck)
{
    const double before = celsius("PMU tdie1");
    laptop.setFaults({.oneStuck = true});
    world.advance(hours(1));
    laptop.setFaults({.oneStuck = true, .oneNotANumber = true}); // another fault does not free it
    world.advance(hours(1));
    EXPECT_EQ(celsius("PMU tdie1"), before);
    EXPECT_GT(celsius("PMU tdie4"), before + 5.0);
    EXPECT_GT(trueCelsius("PMU tdie1"), before + 5.0);
}

TEST_F(SimulatedLaptopTest, aBrokenSensorReadsNotANumberAndTheOthersGoOn)
{
    laptop.setFaults({.oneNotANumber = true});
    const auto readings = laptop.sensorReadings();
    EXPECT_EQ(std::count_if(readings.begin(), readings.end(), [](const auto &r) { return std::isnan(r.celsius); }), 1);
    EXPECT_TRUE(std::isnan(celsius("PMU tdie2")));
}

TEST_F(SimulatedLaptopTest, mayBeUsedFromSeveralThreadsAtOnce)
{
    std::thread copier([&] {
        for (int i = 0; i < 20'000; ++i)
            laptop.countCopy(1000);
    });
    std::thread reader([&] {
        for (int i = 0; i < 500; ++i)
            (void)laptop.sensorReadings();
    });
    for (int i = 0; i < 500; ++i)
        laptop.setBatteryPercent(i % 100);
    copier.join();
    reader.join();
    EXPECT_THAT(laptop.sensorReadings(), SizeIs(57));
}

TEST_F(SimulatedLaptopTest, powerSourcesSayChargerAndLevel)
{
    PowerSourcesSimulated power(laptop);
    laptop.setBatteryPercent(42.4);
    auto sources = power.list();
    ASSERT_THAT(sources, SizeIs(1));
    EXPECT_EQ(sources[0].state, "AC Power");
    EXPECT_EQ(sources[0].currentCapacity, 42);
    laptop.setChargerPluggedIn(false);
    sources = power.list();
    EXPECT_EQ(sources[0].state, "Battery Power");
}

TEST_F(SimulatedLaptopTest, theUserIsIdleFromTheMomentOfWalkingAway)
{
    InputIdleTimeSimulated idle(laptop);
    world.advance(hours(1));
    EXPECT_EQ(idle.sinceLastInput(), seconds(0));
    laptop.setUserAway(true);
    world.advance(minutes(2));
    laptop.setUserAway(true); // does not begin anew
    world.advance(minutes(1));
    EXPECT_EQ(idle.sinceLastInput(), minutes(3));
    laptop.setUserAway(false);
    EXPECT_EQ(idle.sinceLastInput(), seconds(0));
}

TEST_F(SimulatedLaptopTest, sensorsAreReadThroughTheService)
{
    TemperatureSensorsSimulated sensors(laptop);
    const auto readings = sensors.read();
    ASSERT_TRUE(readings);
    EXPECT_THAT(*readings, SizeIs(57));
}

TEST_F(SimulatedLaptopTest, graphicsCopiesReallyCopyAndHeat)
{
    world.advance(hours(3));
    const double rest = trueCelsius("SOC MTR Temp Sensor1");
    GraphicsCopiesSimulated graphics(laptop);
    const auto queue = graphics.openDefaultQueue();
    ASSERT_TRUE(queue);
    constexpr std::size_t bytes = 1 << 20;
    const auto from = queue->makeBuffer(bytes);
    const auto to = queue->makeBuffer(bytes);
    ASSERT_TRUE(from && to);
    for (int i = 0; i < 1024; ++i) // 1 GiB in what is a second of virtual time
        queue->copy(*from, *to, bytes);
    world.advance(seconds(1));
    EXPECT_GT(trueCelsius("SOC MTR Temp Sensor1"), rest + 0.5);
}

TEST_F(SimulatedLaptopTest, aBufferThatNoMemoryHoldsIsNone)
{
    GraphicsCopiesSimulated graphics(laptop);
    EXPECT_EQ(graphics.openDefaultQueue()->makeBuffer(std::numeric_limits<std::size_t>::max()), nullptr);
}

TEST(ProcessorTime, growsWithTheWorkOfThisProcess)
{
    const auto before = processorTimeUsed();
    volatile double sink = 0.0;
    while (processorTimeUsed() - before < std::chrono::milliseconds(20))
        sink = sink + 1.0;
    EXPECT_GT(processorTimeUsed(), before);
}

} // namespace
} // namespace orvalen
