#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Reading a tree like /sys, where a file is one short value that may be gone or refuse to answer at any moment.
namespace orvalen::sysfs {

/// True where `left` comes before `right` as people count: "hwmon2" before "hwmon10".
[[nodiscard]] bool comesBefore(std::string_view left, std::string_view right);

/// The names in a folder as people count them; std::nullopt where it cannot be opened.
[[nodiscard]] std::optional<std::vector<std::string>> entries(const std::string &folder);

/// What a file holds, without the line end; std::nullopt where it cannot be read. At most 255 bytes.
[[nodiscard]] std::optional<std::string> text(const std::string &file);

/// The answer of a file that should hold one whole number.
struct Number
{
    std::optional<std::int64_t> value; ///< std::nullopt: no number, or no answer.
    bool isGone = false;               ///< There is no such file any more.
};

[[nodiscard]] Number number(const std::string &file);

} // namespace orvalen::sysfs
