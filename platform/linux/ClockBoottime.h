#pragma once

#include "platform/Clock.h"

namespace orvalen {

/// Time since the machine was started, suspended or not.
class ClockBoottime : public Clock
{
public:
    [[nodiscard]] std::chrono::nanoseconds now() const override;
    void sleepFor(std::chrono::nanoseconds duration) override;
};

} // namespace orvalen
