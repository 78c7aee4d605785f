#pragma once

#include "platform/Clock.h"

namespace orvalen {

/// Darwin's CLOCK_MONOTONIC_RAW: counts on while the Mac sleeps, and neither the user nor a time server moves it.
/// (CLOCK_MONOTONIC follows adjustments, CLOCK_UPTIME_RAW stands still in a sleeping Mac.)
///
/// A pause does stand still with the Mac: what was left of it is still to come when the Mac wakes.
class ClockContinuous : public Clock
{
public:
    [[nodiscard]] std::chrono::nanoseconds now() const override;
    void sleepFor(std::chrono::nanoseconds duration) override;
};

} // namespace orvalen
