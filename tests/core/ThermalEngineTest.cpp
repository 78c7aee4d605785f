#include "core/ThermalEngine.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "tests/support/FakeMachine.h"

namespace orvalen {
namespace {

using test::FakeMachine;

TEST(PowerStatus, isOnBatteryAndFullWithoutSources)
{
    EXPECT_EQ(powerStatus({}), (PowerStatus{false, 100}));
}

TEST(PowerStatus, anyAcSourceCountsAndTheLastCapacityWins)
{
    EXPECT_EQ(powerStatus({{"AC Power", 80}, {"Battery Power", 60}}), (PowerStatus{true, 60}));
    EXPECT_EQ(powerStatus({{"Battery Power", 60}, {"AC Power", 80}}), (PowerStatus{true, 80}));
}

TEST(PowerStatus, aSourceWithoutCapacityLeavesTheLevelAsItWas)
{
    EXPECT_EQ(powerStatus({{"AC Power", std::nullopt}}), (PowerStatus{true, 100}));
    EXPECT_EQ(powerStatus({{"Battery Power", 40}, {std::nullopt, std::nullopt}}), (PowerStatus{false, 40}));
}

TEST(PowerStatus, onlyTheExactWordsMeanTheCharger)
{
    EXPECT_FALSE(powerStatus({{"ac power", 50}}).isAcConnected);
    EXPECT_FALSE(powerStatus({{"Off Line", 50}}).isAcConnected);
}

TEST(ThermalEngine, readsTheMachineAfreshOnEveryCall)
{
    FakeMachine machine;
    ThermalEngine engine(machine.engineMachine());
    machine.sensors.set(30.0);
    EXPECT_DOUBLE_EQ(engine.readSensors().bridgeTemp, 30.0);
    machine.sensors.set(31.0);
    EXPECT_DOUBLE_EQ(engine.readSensors().bridgeTemp, 31.0);
    EXPECT_EQ(machine.sensors.reads, 2);
}

TEST(ThermalEngine, unavailableSensorsReadAsZeros)
{
    FakeMachine machine;
    ThermalEngine engine(machine.engineMachine());
    machine.sensors.readings = std::nullopt;
    EXPECT_EQ(engine.readSensors(), SystemThermalData());
}

TEST(ThermalEngine, throwingSensorsReadAsZeros)
{
    FakeMachine machine;
    ThermalEngine engine(machine.engineMachine());
    machine.sensors.set(30.0);
    machine.sensors.beforeRead = [] { throw std::runtime_error("no such sensor"); };
    EXPECT_EQ(engine.readSensors(), SystemThermalData());
}

TEST(ThermalEngine, tellsTheIdleTimeInSeconds)
{
    FakeMachine machine;
    ThermalEngine engine(machine.engineMachine());
    machine.idle.idle = std::chrono::milliseconds(1500);
    EXPECT_DOUBLE_EQ(engine.getUserIdleSeconds(), 1.5);
}

TEST(ThermalEngine, aSessionThatDoesNotTellCountsAsAPresentUser)
{
    FakeMachine machine;
    ThermalEngine engine(machine.engineMachine());
    machine.idle.idle = std::nullopt;
    EXPECT_EQ(engine.getUserIdleSeconds(), 0.0);
}

TEST(ThermalEngine, throwingReadersDegradeToNeutralValues)
{
    struct ThrowingIdleTime : InputIdleTime
    {
        std::optional<std::chrono::duration<double>> sinceLastInput() override { throw std::runtime_error("idle"); }
    } idle;
    struct ThrowingPower : PowerSources
    {
        std::vector<PowerSource> list() override { throw std::runtime_error("power"); }
    } power;
    FakeMachine machine;
    ThermalEngine engine(
        {machine.sensors, idle, power, machine.graphics, machine.processors, machine.world, machine.world});
    EXPECT_EQ(engine.getUserIdleSeconds(), 0.0);
    EXPECT_EQ(engine.getPowerStatus(), (PowerStatus{false, 100}));
}

TEST(ThermalEngine, tellsThePowerStatusOfTheMachine)
{
    FakeMachine machine;
    ThermalEngine engine(machine.engineMachine());
    machine.power.set(true, 64);
    EXPECT_EQ(engine.getPowerStatus(), (PowerStatus{true, 64}));
}

} // namespace
} // namespace orvalen
