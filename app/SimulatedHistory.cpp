#include "app/SimulatedHistory.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace orvalen {

void SimulatedHistory::add(const Moment &moment)
{
    kept.push_back(moment);
    // The last one that is too old stays: the curve then reaches to the edge.
    while (kept.size() > 2 && moment.time - kept[1].time >= length)
        kept.pop_front();
}

std::vector<std::pair<std::chrono::nanoseconds, std::chrono::nanoseconds>> SimulatedHistory::warmups() const
{
    std::vector<std::pair<std::chrono::nanoseconds, std::chrono::nanoseconds>> spans;
    bool before = false;
    for (const auto &moment : kept) {
        if (moment.isWarmingUp && !before)
            spans.emplace_back(moment.time, moment.time);
        else if (before)
            spans.back().second = moment.time;
        before = moment.isWarmingUp;
    }
    return spans;
}

TemperatureScale scaleFor(const SimulatedHistory &history, double target)
{
    double lowest = target;
    double highest = target;
    for (const auto &moment : history.moments()) {
        for (const double celsius : {moment.bridge, moment.soc, moment.pmu, moment.room}) {
            lowest = std::min(lowest, celsius);
            highest = std::max(highest, celsius);
        }
    }
    constexpr double margin = 2.0;
    TemperatureScale scale;
    for (const double step : {5.0, 10.0, 20.0, 50.0}) {
        scale = {.from = std::floor((lowest - margin) / step) * step,
                 .to = std::ceil((highest + margin) / step) * step,
                 .step = step};
        if (scale.lines() <= 8)
            break;
    }
    return scale;
}

} // namespace orvalen
