#pragma once

#include <cstdint>
#include <vector>

#include "streaming/screencapture/Pixels.h"

namespace orvalen {

/// The picture of the mouse pointer and its place.
struct Pointer
{
    Rectangle area; ///< Of the picture, the hot spot already accounted for. May reach beyond the desktop.
    std::vector<std::uint32_t> colours; ///< Row by row: alpha, red, green, blue from the highest byte on, the colours
                                        ///< already multiplied by alpha.
};

/// Draws as much of the pointer as lies on these rows.
void draw(const Pointer &pointer, const PixelRows &rows, PixelLayout layout);

} // namespace orvalen
