#include "streaming/screencapture/Pointer.h"

#include <algorithm>

namespace orvalen {

namespace {

/// `below` seen through a pixel that hides `alpha` of it, plus the pixel's own light.
std::uint8_t over(std::uint32_t light, std::uint32_t alpha, std::uint8_t below)
{
    return static_cast<std::uint8_t>(std::min(255U, light + (below * (255U - alpha) + 127U) / 255U));
}

} // namespace

void draw(const Pointer &pointer, const PixelRows &rows, PixelLayout layout)
{
    const auto shared = intersection(pointer.area, rows.area);
    for (int y = shared.y; y < shared.y + shared.height; ++y) {
        const auto *colour = pointer.colours.data() +
                             static_cast<std::ptrdiff_t>(y - pointer.area.y) * pointer.area.width +
                             (shared.x - pointer.area.x);
        auto *pixel = rows.row(y - rows.area.y) + static_cast<std::size_t>(shared.x - rows.area.x) * PixelLayout::bytes;
        for (int x = 0; x < shared.width; ++x, ++colour, pixel += PixelLayout::bytes) {
            const auto alpha = *colour >> 24;
            pixel[layout.red] = over(*colour >> 16 & 0xff, alpha, pixel[layout.red]);
            pixel[layout.green] = over(*colour >> 8 & 0xff, alpha, pixel[layout.green]);
            pixel[layout.blue] = over(*colour & 0xff, alpha, pixel[layout.blue]);
        }
    }
}

} // namespace orvalen
