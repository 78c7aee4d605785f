#pragma once

#include <optional>

namespace orvalen {

/// A wish to heat: up to which bridge temperature (°C), and whether without chimes and notification.
struct WarmupRequest
{
    double target = 0.0;
    bool silent = false;

    friend bool operator==(const WarmupRequest &, const WarmupRequest &) = default;
};

/// What the smart mode knows when it decides.
struct LifecycleInputs
{
    double bridgeTemp = 0.0; ///< °C; 0.0, no reading, counts as cold.
    bool isAcConnected = true;
    int batteryPercent = 100;
    double userIdleSeconds = 0.0;
    bool isUserAway = false; ///< As decided last.
    double targetTemp = 40.0;
    double idleTimeoutMinutes = 3.0;
};

struct LifecycleDecision
{
    bool isUserAway = false;
    std::optional<WarmupRequest> warmup;

    friend bool operator==(const LifecycleDecision &, const LifecycleDecision &) = default;
};

/// The smart mode's rules: keep the display warm while the user is away, warm it audibly on return, top it up silently
/// while the user works. A low battery forbids all but the return.
[[nodiscard]] LifecycleDecision decide(const LifecycleInputs &known);

/// What two looks at the charger tell: it has just been plugged in, and the bridge is cool enough to care.
[[nodiscard]] bool isColdPlugIn(bool wasAcConnected, bool isAcConnected, double bridgeTemp);

} // namespace orvalen
