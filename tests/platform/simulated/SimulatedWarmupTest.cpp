#include <gmock/gmock.h>

#include <optional>
#include <ostream>

#include "core/AppState.h"
#include "core/ThermalEngine.h"
#include "platform/simulated/GraphicsCopiesSimulated.h"
#include "platform/simulated/InputIdleTimeSimulated.h"
#include "platform/simulated/PowerSourcesSimulated.h"
#include "platform/simulated/SimulatedLaptop.h"
#include "platform/simulated/TemperatureSensorsSimulated.h"
#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using std::chrono::seconds;
using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

/// The program's own rules on a simulated laptop in virtual time. In place of the heaters' threads there is a count: so
/// many cores busy and so many bytes copied, from the start of a pulse to its end.
class SimulatedWarmup : public testing::Test
{
protected:
    void switchOn(int cores, double spinners, double roomCelsius = 20.0)
    {
        processors.cores = cores;
        spinnersWhileHeating = spinners;
        laptop.emplace(SimulatedLaptop::Means{world, processors, [this] { return used(); }}, roomCelsius);
        sensors.emplace(*laptop);
        power.emplace(*laptop);
        idle.emplace(*laptop);
        graphics.emplace(*laptop);
        engine.emplace(ThermalEngine::Machine{*sensors, *idle, *power, *graphics, processors, world, world});
        state.emplace(AppState::Services{*engine, settings, world, sounds, notifications});
        warming = state->isWarmingUp.subscribe([this](bool on) {
            (void)used();
            pulses += on ? 1 : 0;
            heating = on;
        });
        copying = world.repeatOnMain(milliseconds(50), [this] {
            if (heating)
                laptop->countCopy((std::size_t{1} << 30) / 20);
        });
    }

    std::chrono::nanoseconds used()
    {
        if (heating)
            total += std::chrono::duration_cast<std::chrono::nanoseconds>((world.now() - last) * spinnersWhileHeating);
        last = world.now();
        return total;
    }

    double bridge() { return summarised(laptop->trueReadings()).bridgeTemp; }

    /// Lets time pass until the bridge is there and says how long that took.
    template <typename Reached>
    std::chrono::nanoseconds waitFor(Reached reached, std::chrono::nanoseconds atMost)
    {
        const auto start = world.now();
        while (!reached() && world.now() - start < atMost)
            world.advance(milliseconds(250));
        return world.now() - start;
    }

    test::VirtualWorld world;
    test::FakeProcessors processors;
    test::FakeSettingsStore settings;
    test::FakeSounds sounds;
    test::FakeNotifications notifications;
    std::optional<SimulatedLaptop> laptop;
    std::optional<TemperatureSensorsSimulated> sensors;
    std::optional<PowerSourcesSimulated> power;
    std::optional<InputIdleTimeSimulated> idle;
    std::optional<GraphicsCopiesSimulated> graphics;
    std::optional<ThermalEngine> engine;
    std::optional<AppState> state;
    Subscription warming;
    std::unique_ptr<RepeatingTask> copying;

    int pulses = 0;
    bool heating = false;
    double spinnersWhileHeating = 0.0;
    std::chrono::nanoseconds total{0};
    std::chrono::nanoseconds last{0};
};

/// Cores of the host, and how many of them the heaters really get: on two the copies take their share of the same two.
struct Host
{
    int cores;
    double busy;

    friend std::ostream &operator<<(std::ostream &out, const Host &host)
    {
        return out << host.busy << " of " << host.cores << " cores busy";
    }
};

class SimulatedWarmupOn : public SimulatedWarmup, public testing::WithParamInterface<Host>
{
};

TEST_P(SimulatedWarmupOn, fromColdTheBridgeIsReadyWithinThreePulsesAndCoolsInMinutes)
{
    switchOn(GetParam().cores, GetParam().busy);
    EXPECT_LT(bridge(), 21.0);
    (void)waitFor([&] { return bridge() >= 40.0; }, minutes(3));
    EXPECT_GE(bridge(), 40.0);
    EXPECT_THAT(pulses, AllOf(Ge(1), Le(3)));

    world.advance(seconds(1));
    EXPECT_FALSE(state->isWarmingUp);
    state->smartModeEnabled = false; // or it would be topped up on its way down
    const auto cooling = waitFor([&] { return bridge() < 38.0; }, minutes(30));
    EXPECT_GE(cooling, minutes(1));
    EXPECT_LE(cooling, minutes(6));
}

INSTANTIATE_TEST_SUITE_P(Hosts, SimulatedWarmupOn,
                         testing::Values(Host{2, 2.0}, Host{4, 3.0}, Host{8, 4.0}, Host{8, 5.0}, Host{16, 5.0}));

TEST_F(SimulatedWarmup, inAWarmRoomAWarmLaptopNeedsNoHelp)
{
    switchOn(8, 4.0, 25.0);
    world.advance(minutes(30));
    pulses = 0;
    world.advance(minutes(30));
    EXPECT_EQ(pulses, 0);
    EXPECT_GT(bridge(), 40.0);
}

TEST_F(SimulatedWarmup, inACoolRoomItIsToppedUpNowAndThen)
{
    switchOn(8, 4.0, 20.0);
    world.advance(minutes(30));
    pulses = 0;
    world.advance(minutes(30));
    EXPECT_THAT(pulses, AllOf(Ge(5), Le(30)));
    EXPECT_GT(bridge(), 38.0);
}

TEST_F(SimulatedWarmup, withoutSensorsAPulseEndsByItsTimeOut)
{
    switchOn(8, 4.0);
    laptop->setFaults({.allGone = true});
    state->smartModeEnabled = false;
    state->triggerWarmup();
    EXPECT_TRUE(state->isWarmingUp);
    const auto start = world.now();
    world.runUntilIdle();
    EXPECT_FALSE(state->isWarmingUp);
    EXPECT_GT(world.now() - start, seconds(15));
    EXPECT_LE(world.now() - start, seconds(21));
    EXPECT_EQ(state->thermalData.value(), SystemThermalData());
}

TEST_F(SimulatedWarmup, oneStuckSensorDoesNotHoldAPulse)
{
    switchOn(8, 4.0);
    laptop->setFaults({.oneStuck = true});
    (void)waitFor([&] { return state->thermalData.value().bridgeTemp >= 40.0; }, minutes(3));
    EXPECT_GE(state->thermalData.value().bridgeTemp, 40.0);
    EXPECT_LE(pulses, 4);
}

TEST_F(SimulatedWarmup, oneSensorThatIsNoNumberIsLeftOut)
{
    switchOn(8, 4.0);
    const double before = engine->readSensors().bridgeTemp;
    laptop->setFaults({.oneNotANumber = true});
    EXPECT_NEAR(engine->readSensors().bridgeTemp, before, 0.2);
    (void)waitFor([&] { return bridge() >= 40.0; }, minutes(3));
    EXPECT_GE(bridge(), 40.0);
    EXPECT_LE(pulses, 3);
}

TEST_F(SimulatedWarmup, walkingAwayAndComingBackIsNoticed)
{
    switchOn(8, 4.0, 25.0);
    world.advance(minutes(30));
    laptop->setUserAway(true);
    world.advance(minutes(2));
    EXPECT_FALSE(state->isUserAway);
    world.advance(minutes(2));
    EXPECT_TRUE(state->isUserAway);
    laptop->setUserAway(false);
    world.advance(seconds(3));
    EXPECT_FALSE(state->isUserAway);
}

TEST_F(SimulatedWarmup, pluggingTheChargerIntoAColdLaptopWarmsItUpAudibly)
{
    switchOn(8, 4.0, 20.0);
    state->smartModeEnabled = false;
    laptop->setChargerPluggedIn(false);
    world.advance(seconds(3));
    EXPECT_EQ(pulses, 0);
    laptop->setChargerPluggedIn(true);
    world.advance(seconds(3));
    EXPECT_EQ(pulses, 1);
    EXPECT_THAT(sounds.played, ::testing::Contains("Blow"));
}

} // namespace
} // namespace orvalen
