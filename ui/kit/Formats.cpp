#include "ui/kit/Formats.h"

#include <cmath>
#include <limits>

#include "core/Decimals.h"

namespace orvalen::kit {

QString oneDecimal(double value)
{
    return QString::fromStdString(orvalen::oneDecimal(value));
}

QString wholePart(double value)
{
    if (std::isnan(value))
        return QString::number(0);
    using Limits = std::numeric_limits<qlonglong>;
    constexpr double beyond = -static_cast<double>(Limits::min()); // a power of two: exact
    if (value >= beyond)
        return QString::number(Limits::max());
    if (value < -beyond)
        return QString::number(Limits::min());
    return QString::number(static_cast<qlonglong>(value));
}

} // namespace orvalen::kit
