#pragma once

#include <cstdint>
#include <string_view>

namespace orvalen {

/// The display that a stream's query asks for: the first value of `d`, percent- and plus-decoded, as a decimal integer
/// with an optional sign and blanks around it. Absent, empty, or anything else (what does not fit included): display 1.
[[nodiscard]] std::int64_t displayNumber(std::string_view query);

} // namespace orvalen
