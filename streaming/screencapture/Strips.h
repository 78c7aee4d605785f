#pragma once

#include "streaming/screencapture/Display.h"

namespace orvalen {

/// A picture is taken, compared and encoded in strips of its whole width. A strip of a high display still fits a
/// processor's cache and costs few page faults; a strip's rows are whole blocks of the JPEG.
namespace strips {

inline constexpr int rows = 64;

[[nodiscard]] constexpr unsigned count(int height)
{
    return static_cast<unsigned>((height + rows - 1) / rows);
}

/// The strip of that index, counted from 0: its place on the desktop.
[[nodiscard]] constexpr Rectangle area(const Rectangle &picture, unsigned index)
{
    const int top = static_cast<int>(index) * rows;
    return {picture.x, picture.y + top, picture.width, picture.height - top < rows ? picture.height - top : rows};
}

} // namespace strips

} // namespace orvalen
