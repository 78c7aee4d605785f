#pragma once

#include <chrono>

namespace orvalen {

/// Time as the rules see it. Any thread.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Time since a fixed, unspecified instant. Never jumps back, is not moved by setting the wall clock, and goes on
    /// counting while the machine is suspended.
    [[nodiscard]] virtual std::chrono::nanoseconds now() const = 0;

    /// Blocks the calling thread for at least `duration`. The main thread sleeps for fractions of a second at most.
    virtual void sleepFor(std::chrono::nanoseconds duration) = 0;
};

} // namespace orvalen
