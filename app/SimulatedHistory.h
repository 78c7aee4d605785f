#pragma once

#include <chrono>
#include <deque>
#include <utility>
#include <vector>

namespace orvalen {

/// What a simulated laptop went through lately. Not thread-safe.
class SimulatedHistory
{
public:
    static constexpr std::chrono::minutes length{5};

    struct Moment
    {
        std::chrono::nanoseconds time{0}; ///< By the clock; later than the moment before.
        double bridge = 0.0;              ///< °C, as the three below.
        double soc = 0.0;
        double pmu = 0.0;
        double room = 0.0;
        bool isWarmingUp = false;
    };

    /// Keeps the moment, and drops what is too old beside it.
    void add(const Moment &moment);

    [[nodiscard]] const std::deque<Moment> &moments() const { return kept; }

    /// The spans of time in which the laptop was being warmed up, oldest first; the last one may be going on.
    [[nodiscard]] std::vector<std::pair<std::chrono::nanoseconds, std::chrono::nanoseconds>> warmups() const;

private:
    std::deque<Moment> kept;
};

/// A scale for an axis of temperatures: from, to and between lines, all multiples of the same round step.
struct TemperatureScale
{
    double from = 0.0; ///< °C
    double to = 0.0;
    double step = 5.0;

    [[nodiscard]] int lines() const { return static_cast<int>((to - from) / step + 0.5) + 1; }
    friend bool operator==(const TemperatureScale &, const TemperatureScale &) = default;
};

/// Holds every temperature of the history and the target, with some room on either side and no more than eight lines.
[[nodiscard]] TemperatureScale scaleFor(const SimulatedHistory &history, double target);

} // namespace orvalen
