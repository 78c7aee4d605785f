#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "streaming/screencapture/Display.h"

namespace orvalen {

/// Where in the four bytes of a pixel each of its colours lies; the fourth byte means nothing.
struct PixelLayout
{
    std::uint8_t red = 2;
    std::uint8_t green = 1;
    std::uint8_t blue = 0;

    static constexpr std::size_t bytes = 4;

    bool operator==(const PixelLayout &) const = default;
};

enum class ByteOrder
{
    leastSignificantFirst,
    mostSignificantFirst,
};

/// How a screen says what its pixels look like.
struct PixelDescription
{
    unsigned bitsPerPixel = 0;
    ByteOrder order = ByteOrder::leastSignificantFirst;
    std::uint32_t redMask = 0; ///< 0 where pixels are no colours but numbers of colours.
    std::uint32_t greenMask = 0;
    std::uint32_t blueMask = 0;
};

/// std::nullopt unless pixels are 32 bits with 8 for each colour, green between red and blue.
[[nodiscard]] std::optional<PixelLayout> pixelLayout(const PixelDescription &description);

/// Rows of pixels in somebody else's memory, without gaps.
struct PixelRows
{
    std::uint8_t *data = nullptr;
    Rectangle area; ///< Where they lie on the desktop.

    [[nodiscard]] std::size_t rowBytes() const { return static_cast<std::size_t>(area.width) * PixelLayout::bytes; }
    [[nodiscard]] std::size_t bytes() const { return rowBytes() * static_cast<std::size_t>(area.height); }
    [[nodiscard]] std::uint8_t *row(int index) const { return data + rowBytes() * static_cast<std::size_t>(index); }
};

} // namespace orvalen
