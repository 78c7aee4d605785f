#pragma once

#include <string>

namespace orvalen {

/// One decimal, as "%.1f" has it in the C locale, whatever the process's own locale.
[[nodiscard]] std::string oneDecimal(double value);

} // namespace orvalen
