#include "core/Lifecycle.h"

#include <gtest/gtest.h>

namespace orvalen {
namespace {

constexpr LifecycleDecision staysActive{false, std::nullopt};
constexpr LifecycleDecision staysAway{true, std::nullopt};

LifecycleInputs active(double bridge)
{
    return {.bridgeTemp = bridge};
}

LifecycleInputs away(double bridge)
{
    return {.bridgeTemp = bridge, .userIdleSeconds = 600.0, .isUserAway = true};
}

LifecycleInputs returning(double bridge)
{
    return {.bridgeTemp = bridge, .userIdleSeconds = 0.5, .isUserAway = true};
}

LifecycleInputs onBattery(LifecycleInputs inputs, int percent)
{
    inputs.isAcConnected = false;
    inputs.batteryPercent = percent;
    return inputs;
}

LifecycleInputs withTarget(LifecycleInputs inputs, double target)
{
    inputs.targetTemp = target;
    return inputs;
}

LifecycleDecision heats(bool isUserAway, double target, bool silent)
{
    return {isUserAway, WarmupRequest{target, silent}};
}

TEST(Lifecycle, theUserIsAwayAtExactlyTheLimit)
{
    auto inputs = active(45.0);
    inputs.userIdleSeconds = 179.999;
    EXPECT_EQ(decide(inputs), staysActive);
    inputs.userIdleSeconds = 180.0;
    EXPECT_EQ(decide(inputs), staysAway);
}

TEST(Lifecycle, theLimitFollowsTheSetting)
{
    auto inputs = active(45.0);
    inputs.idleTimeoutMinutes = 0.5;
    inputs.userIdleSeconds = 30.0;
    EXPECT_EQ(decide(inputs), staysAway);
}

TEST(Lifecycle, anAwayUsersDisplayIsHeatedSilentlyBelow38)
{
    EXPECT_EQ(decide(away(37.99)), heats(true, 40.0, true));
    EXPECT_EQ(decide(away(38.0)), staysAway);
}

TEST(Lifecycle, awayTargetsAreAtLeast39AndAHalf)
{
    EXPECT_EQ(decide(withTarget(away(30.0), 39.0)), heats(true, 39.5, true));
    EXPECT_EQ(decide(withTarget(away(30.0), 41.0)), heats(true, 41.0, true));
}

TEST(Lifecycle, aLowBatteryForbidsHeatingWhileAway)
{
    EXPECT_EQ(decide(onBattery(away(37.9), 14)), staysAway);
    EXPECT_EQ(decide(onBattery(away(37.9), 15)), heats(true, 40.0, true));
}

TEST(Lifecycle, aLowBatteryOnTheChargerForbidsNothing)
{
    auto inputs = away(37.9);
    inputs.batteryPercent = 3;
    EXPECT_EQ(decide(inputs), heats(true, 40.0, true));
}

TEST(Lifecycle, theFirstTickAwayHeatsAlready)
{
    auto inputs = active(30.0);
    inputs.userIdleSeconds = 200.0;
    EXPECT_EQ(decide(inputs), heats(true, 40.0, true));
}

TEST(Lifecycle, aReturningUserAlwaysGetsTheAudibleWarmup)
{
    EXPECT_EQ(decide(onBattery(returning(39.4), 5)), heats(false, 40.0, false));
    EXPECT_EQ(decide(withTarget(returning(39.4), 38.0)), heats(false, 38.0, false));
}

TEST(Lifecycle, aReturningUserWithAWarmDisplayIsJustBack)
{
    EXPECT_EQ(decide(returning(39.5)), staysActive);
}

TEST(Lifecycle, anActiveUsersDisplayIsToppedUpSilentlyBelowTheThreshold)
{
    EXPECT_EQ(decide(active(38.4)), heats(false, 40.0, true));
    EXPECT_EQ(decide(active(38.5)), staysActive);
}

TEST(Lifecycle, theThresholdIsOneAndAHalfBelowTheTargetButAtLeast38AndAHalf)
{
    EXPECT_EQ(decide(withTarget(active(39.4), 41.0)), heats(false, 41.0, true));
    EXPECT_EQ(decide(withTarget(active(39.5), 41.0)), staysActive);
    EXPECT_EQ(decide(withTarget(active(38.4), 38.0)), heats(false, 38.0, true));
    EXPECT_EQ(decide(withTarget(active(38.5), 38.0)), staysActive);
}

TEST(Lifecycle, aLowBatteryForbidsTheTopUp)
{
    EXPECT_EQ(decide(onBattery(active(30.0), 14)), staysActive);
    EXPECT_EQ(decide(onBattery(active(30.0), 15)), heats(false, 40.0, true));
}

TEST(Lifecycle, aFailedReadingCountsAsCold)
{
    EXPECT_EQ(decide(active(0.0)), heats(false, 40.0, true));
    EXPECT_EQ(decide(away(0.0)), heats(true, 40.0, true));
    EXPECT_EQ(decide(returning(0.0)), heats(false, 40.0, false));
}

TEST(ColdPlugIn, isTheStepFromBatteryToChargerBelow36AndAHalf)
{
    EXPECT_TRUE(isColdPlugIn(false, true, 36.4));
    EXPECT_FALSE(isColdPlugIn(false, true, 36.5));
    EXPECT_FALSE(isColdPlugIn(true, true, 20.0));
    EXPECT_FALSE(isColdPlugIn(true, false, 20.0));
    EXPECT_FALSE(isColdPlugIn(false, false, 20.0));
}

} // namespace
} // namespace orvalen
