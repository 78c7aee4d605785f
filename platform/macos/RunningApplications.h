#pragma once

#include <string_view>

namespace orvalen {

/// Whether another process of this session is an application of that bundle identifier, from wherever it was started.
/// Needs no application object. Main thread only.
[[nodiscard]] bool isRunningElsewhere(std::string_view bundleIdentifier);

} // namespace orvalen
