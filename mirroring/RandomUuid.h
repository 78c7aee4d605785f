#pragma once

#include <string>

namespace orvalen {

/// A new random UUID (version 4) in canonical form with capital letters. Any thread.
[[nodiscard]] std::string randomUuid();

} // namespace orvalen
