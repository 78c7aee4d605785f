#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "streaming/screencapture/StripEncoder.h"

namespace orvalen::test {

/// A picture as a decoder sees it.
struct Decoded
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> rgb;

    struct Colour
    {
        int red = 0;
        int green = 0;
        int blue = 0;
    };
    [[nodiscard]] Colour at(int x, int y) const;

    bool operator==(const Decoded &) const = default;
};

/// Throws std::runtime_error where the library has as much as a warning.
[[nodiscard]] Decoded decoded(std::string_view jpeg);

/// What the library makes of the whole picture at once, with a restart after that many rows of blocks, or none (0).
[[nodiscard]] std::string encodedAtOnce(const PictureFormat &format, const std::vector<std::uint8_t> &pixels,
                                        int restartInRows);

/// Without its comments.
[[nodiscard]] std::string withoutComments(std::string_view jpeg);

/// Something of everything: flat areas, edges, noise; the same for the same seed.
[[nodiscard]] std::vector<std::uint8_t> drawnPixels(int width, int height, unsigned seed = 1);

} // namespace orvalen::test
