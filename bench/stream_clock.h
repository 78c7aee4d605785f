#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace orvalen::bench {

/// A clock that a picture can carry through a capture and its compression: a row of black and white squares at the top
/// left of the screen. Forty bits of milliseconds since the epoch, most significant first, and eight to check them by.
namespace stream_clock {

inline constexpr int squareSize = 16; ///< Pixels; one block of a compressed picture.
inline constexpr int squareCount = 48;
inline constexpr int width = squareSize * squareCount;

using Squares = std::array<bool, squareCount>; ///< True: white.

[[nodiscard]] constexpr Squares squaresOf(std::int64_t milliseconds)
{
    const std::uint64_t time = static_cast<std::uint64_t>(milliseconds) & 0xff'ffff'ffffu;
    std::uint64_t check = 0xa5;
    for (int shift = 0; shift < 40; shift += 8)
        check = (check * 31 + (time >> shift)) & 0xff;
    Squares squares{};
    for (int i = 0; i < squareCount; ++i)
        squares[static_cast<std::size_t>(i)] = ((time << 8 | check) >> (squareCount - 1 - i)) & 1;
    return squares;
}

/// The time that the squares tell, in milliseconds since the epoch; `now`: a time near it. Nothing if they tell none.
[[nodiscard]] constexpr std::optional<std::int64_t> timeOf(const Squares &squares, std::int64_t now)
{
    std::int64_t time = 0;
    for (std::size_t i = 0; i < 40; ++i)
        time = time << 1 | squares[i];
    if (squaresOf(time) != squares)
        return std::nullopt;
    return (now & ~std::int64_t{0xff'ffff'ffff}) | time;
}

/// Reads the clock from the beginning of a JPEG; the rest of the picture need not be there.
[[nodiscard]] std::optional<std::int64_t> read(std::string_view jpeg, std::int64_t now);

} // namespace stream_clock

} // namespace orvalen::bench
