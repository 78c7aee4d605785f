#include "core/Lifecycle.h"

#include <algorithm>

namespace orvalen {

namespace {

// All temperatures in °C, on the bridge.
constexpr double awayHeatsBelow = 38.0;
constexpr double awayTargetAtLeast = 39.5;
constexpr double returnHeatsBelow = 39.5;
constexpr double topUpMargin = 1.5;
constexpr double topUpHeatsBelowAtLeast = 38.5;
constexpr double plugInHeatsBelow = 36.5;
constexpr int lowBatteryPercent = 15;

bool isBatteryLow(const LifecycleInputs &known)
{
    return !known.isAcConnected && known.batteryPercent < lowBatteryPercent;
}

LifecycleDecision whileAway(const LifecycleInputs &known)
{
    if (known.bridgeTemp >= awayHeatsBelow || isBatteryLow(known))
        return {true, std::nullopt};
    return {true, WarmupRequest{std::max(known.targetTemp, awayTargetAtLeast), true}};
}

// A returning user always gets the audible warm-up: the battery is deliberately not asked.
LifecycleDecision onReturn(const LifecycleInputs &known)
{
    if (known.bridgeTemp >= returnHeatsBelow)
        return {false, std::nullopt};
    return {false, WarmupRequest{known.targetTemp, false}};
}

LifecycleDecision whileActive(const LifecycleInputs &known)
{
    const double threshold = std::max(known.targetTemp - topUpMargin, topUpHeatsBelowAtLeast);
    if (known.bridgeTemp >= threshold || isBatteryLow(known))
        return {false, std::nullopt};
    return {false, WarmupRequest{known.targetTemp, true}};
}

} // namespace

LifecycleDecision decide(const LifecycleInputs &known)
{
    if (known.idleTimeoutMinutes * 60.0 <= known.userIdleSeconds)
        return whileAway(known);
    return known.isUserAway ? onReturn(known) : whileActive(known);
}

bool isColdPlugIn(bool wasAcConnected, bool isAcConnected, double bridgeTemp)
{
    return !wasAcConnected && isAcConnected && bridgeTemp < plugInHeatsBelow;
}

} // namespace orvalen
