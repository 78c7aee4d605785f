#pragma once

#include <QString>

namespace orvalen::kit {

/// One decimal, as "%.1f" has it in the C locale, whatever the process's own locale.
[[nodiscard]] QString oneDecimal(double value);

/// The part before the decimal point: cut off, not rounded. The largest or smallest integer stands for what is beyond
/// it.
[[nodiscard]] QString wholePart(double value);

} // namespace orvalen::kit
