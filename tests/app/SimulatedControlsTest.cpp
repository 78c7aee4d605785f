#include "app/SimulatedControls.h"

#include <gmock/gmock.h>

#include "platform/simulated/SimulatedLaptop.h"
#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using std::chrono::minutes;
using std::chrono::seconds;

class SimulatedControlsTest : public testing::Test
{
protected:
    test::VirtualWorld world;
    test::FakeProcessors processors;
    SimulatedLaptop laptop{{world, processors, [] { return std::chrono::nanoseconds(0); }}, 18.0};
    SimulatedControls controls{laptop};
};

TEST_F(SimulatedControlsTest, beginWithWhatTheLaptopIs)
{
    EXPECT_EQ(controls.roomCelsius, 18.0);
    EXPECT_EQ(controls.batteryPercent, 80.0);
    EXPECT_TRUE(controls.isChargerPluggedIn);
    EXPECT_FALSE(controls.isUserAway);
    EXPECT_FALSE(controls.allSensorsGone);
    EXPECT_NEAR(controls.temperatures.value().bridgeTemp, 18.5, 1.0);
}

TEST_F(SimulatedControlsTest, settingChangesTheLaptop)
{
    controls.roomCelsius = 7.0;
    controls.isChargerPluggedIn = false;
    controls.batteryPercent = 12.0;
    controls.isUserAway = true;
    controls.oneSensorStuck = true;
    EXPECT_EQ(laptop.roomCelsius(), 7.0);
    EXPECT_FALSE(laptop.isChargerPluggedIn());
    EXPECT_EQ(laptop.batteryPercent(), 12.0);
    EXPECT_TRUE(laptop.isUserAway());
    EXPECT_TRUE(laptop.faults().oneStuck);
    EXPECT_FALSE(laptop.faults().allGone);
}

TEST_F(SimulatedControlsTest, faultsAddUp)
{
    controls.oneSensorStuck = true;
    controls.oneSensorNotANumber = true;
    controls.allSensorsGone = true;
    controls.oneSensorStuck = false;
    EXPECT_TRUE(laptop.faults().allGone);
    EXPECT_TRUE(laptop.faults().oneNotANumber);
    EXPECT_FALSE(laptop.faults().oneStuck);
}

TEST_F(SimulatedControlsTest, aRefreshShowsTheBatteryRoundedAndLeavesItAsItIs)
{
    controls.isChargerPluggedIn = false;
    laptop.setBatteryPercent(42.4);
    controls.refresh();
    EXPECT_EQ(controls.batteryPercent, 42.0);
    EXPECT_EQ(laptop.batteryPercent(), 42.4);
}

TEST_F(SimulatedControlsTest, aRefreshTellsOnlyWhatChanged)
{
    int told = 0;
    const auto away = controls.secondsAway.subscribe([&](double) { ++told; });
    const auto battery = controls.batteryPercent.subscribe([&](double) { ++told; });
    told = 0;
    controls.refresh();
    EXPECT_EQ(told, 0);
}

TEST_F(SimulatedControlsTest, secondsAwayAreWholeAndEndWithTheReturn)
{
    controls.isUserAway = true;
    world.advance(std::chrono::milliseconds(61'700));
    controls.refresh();
    EXPECT_EQ(controls.secondsAway, 61.0);
    controls.isUserAway = false;
    EXPECT_EQ(controls.secondsAway, 0.0);
}

TEST_F(SimulatedControlsTest, showTheTrueTemperaturesWhateverIsWrongWithTheSensors)
{
    controls.allSensorsGone = true;
    world.advance(minutes(30));
    controls.refresh();
    EXPECT_GT(controls.temperatures.value().bridgeTemp, 30.0);
}

TEST_F(SimulatedControlsTest, coolingDownShowsAtOnce)
{
    world.advance(minutes(30));
    controls.refresh();
    controls.coolDown();
    EXPECT_NEAR(controls.temperatures.value().bridgeTemp, 18.5, 1.0);
}

} // namespace
} // namespace orvalen
