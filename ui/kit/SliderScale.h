#pragma once

namespace orvalen::kit {

/// The places of a slider: `from`, and on in steps, to `to`. A value may lie between the places or beyond them.
struct SliderScale
{
    double from = 0.0;
    double to = 1.0;
    double step = 1.0;

    /// How many steps there are.
    [[nodiscard]] int steps() const;

    [[nodiscard]] double nearest(double value) const;

    /// That many places further up, or down where `count` is negative, but for the ends. A value between two places
    /// comes to one of them with its first step; one that has no place ahead of it stays as it is.
    [[nodiscard]] double moved(double value, int count) const;

    /// Where the value stands: 0 at `from` or below, 1 at `to` or above.
    [[nodiscard]] double fraction(double value) const;

    /// The place closest to a fraction of the way.
    [[nodiscard]] double at(double fraction) const;
};

} // namespace orvalen::kit
