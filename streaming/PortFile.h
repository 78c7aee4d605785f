#pragma once

#include <optional>
#include <string_view>

namespace orvalen {

/// The port in the bytes that the stream server left in its port file: a decimal integer with an optional sign and
/// white space around it. std::nullopt for anything else, and for what no `int` holds. Whether there is such a port is
/// not asked: who can read the number can also see it.
[[nodiscard]] std::optional<int> portFrom(std::string_view contents);

} // namespace orvalen
