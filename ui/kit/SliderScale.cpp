#include "ui/kit/SliderScale.h"

#include <algorithm>
#include <cmath>

namespace orvalen::kit {

int SliderScale::steps() const
{
    return static_cast<int>(std::lround((to - from) / step));
}

double SliderScale::nearest(double value) const
{
    return at(fraction(value));
}

double SliderScale::moved(double value, int count) const
{
    if (std::isnan(value))
        return from;
    constexpr double hair = 1e-9; // a place is hit in spite of rounding
    const double place = std::clamp((value - from) / step, -1.0, steps() + 1.0);
    const double start = count > 0 ? std::floor(place + hair) : std::ceil(place - hair);
    const double goal = from + std::clamp(start + count, 0.0, static_cast<double>(steps())) * step;
    const bool isAhead = count > 0 ? goal > value : goal < value;
    return isAhead ? goal : value;
}

double SliderScale::fraction(double value) const
{
    return std::isnan(value) ? 0.0 : std::clamp((value - from) / (to - from), 0.0, 1.0);
}

double SliderScale::at(double fraction) const
{
    return from + std::round(std::clamp(fraction, 0.0, 1.0) * steps()) * step;
}

} // namespace orvalen::kit
