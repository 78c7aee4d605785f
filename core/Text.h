#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvalen::text {

/// What every program that reads text of others has to do. Text is UTF-8. Any thread.

[[nodiscard]] bool isUtf8(std::string_view bytes);

/// Without the white space and line ends around it, those of every script; std::nullopt if it is not UTF-8.
[[nodiscard]] std::optional<std::string_view> trimmed(std::string_view bytes);

/// In small letters, those of every script and of no language in particular. Bytes that are no UTF-8 become U+FFFD.
[[nodiscard]] std::string lowerCased(std::string_view bytes);

/// Whether the sign is one that is drawn as a picture in colours, unless the text asks otherwise.
[[nodiscard]] bool isPicture(char32_t sign);

} // namespace orvalen::text
