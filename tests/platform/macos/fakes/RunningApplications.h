#pragma once

#include <functional>
#include <string_view>

namespace orvalen::fake {

/// What isRunningElsewhere answers, where Objective-C is none of the test's business. Empty: that nobody does.
void setRunningElsewhere(std::function<bool(std::string_view bundleIdentifier)> answer);

} // namespace orvalen::fake
