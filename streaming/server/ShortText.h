#pragma once

#include <array>
#include <charconv>
#include <concepts>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace orvalen {

/// A text of bounded length that needs no heap: thousands of connection threads would each get a share of one, and keep
/// it. What does not fit is cut off.
class ShortText
{
public:
    static constexpr std::size_t capacity = 512;

    ShortText() = default;
    ShortText(std::string_view text) { *this << text; }

    ShortText &operator<<(std::string_view text)
    {
        const auto taken = text.substr(0, capacity - length);
        if (!taken.empty())
            std::memcpy(characters.data() + length, taken.data(), taken.size());
        length += taken.size();
        return *this;
    }

    ShortText &operator<<(std::integral auto number)
    {
        std::array<char, 24> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
        return *this << std::string_view(digits.data(), static_cast<std::size_t>(end - digits.data()));
    }

    /// `number` with zeros in front up to `width` digits.
    ShortText &zeroPadded(unsigned long number, std::size_t width)
    {
        ShortText digits;
        digits << number;
        for (auto missing = width; missing > digits.length; --missing)
            *this << "0";
        return *this << std::string_view(digits);
    }

    operator std::string_view() const { return {characters.data(), length}; }

private:
    std::array<char, capacity> characters{};
    std::size_t length = 0;
};

} // namespace orvalen
