#pragma once

#include <chrono>

namespace orvalen {

/// Processor time that this process has used so far, on all cores and by all its threads together. Any thread.
[[nodiscard]] std::chrono::nanoseconds processorTimeUsed();

} // namespace orvalen
