#pragma once

#include <string>
#include <vector>

namespace orvalen::fake {

/// What has been asked of the fakes, in order, a line each: the function and its arguments. Any thread.
void note(std::string call);

/// As std::snprintf writes it. Numbers are decimal, strings as they stand.
[[gnu::format(printf, 1, 2)]] void note(const char *format, ...);

/// All since the last asking.
[[nodiscard]] std::vector<std::string> takeCalls();

} // namespace orvalen::fake
