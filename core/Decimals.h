#pragma once

#include <string>

namespace orvalen {

/// The nearest whole number, as "%.0f" has it in the C locale, whatever the process's own locale.
[[nodiscard]] std::string noDecimals(double value);

/// One decimal, as "%.1f" has it in the C locale, whatever the process's own locale.
[[nodiscard]] std::string oneDecimal(double value);

} // namespace orvalen
