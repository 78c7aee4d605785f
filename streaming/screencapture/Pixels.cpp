#include "streaming/screencapture/Pixels.h"

#include <bit>

namespace orvalen {

namespace {

/// The byte that eight set bits fill; std::nullopt if they are others.
std::optional<std::uint8_t> byteOf(std::uint32_t mask, ByteOrder order)
{
    const int shift = std::countr_zero(mask);
    if (mask == 0 || shift % 8 != 0 || mask >> shift != 0xff)
        return std::nullopt;
    return static_cast<std::uint8_t>(order == ByteOrder::leastSignificantFirst ? shift / 8 : 3 - shift / 8);
}

} // namespace

std::optional<PixelLayout> pixelLayout(const PixelDescription &description)
{
    const auto red = byteOf(description.redMask, description.order);
    const auto green = byteOf(description.greenMask, description.order);
    const auto blue = byteOf(description.blueMask, description.order);
    if (description.bitsPerPixel != 8 * PixelLayout::bytes || !red || !green || !blue || *red + *blue != 2 * *green ||
        *red == *blue)
        return std::nullopt;
    return PixelLayout{*red, *green, *blue};
}

} // namespace orvalen
