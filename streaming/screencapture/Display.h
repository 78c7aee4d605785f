#pragma once

#include <cstdint>
#include <vector>

namespace orvalen {

/// In pixels, from the upper left corner of the whole desktop.
struct Rectangle
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
    bool operator==(const Rectangle &) const = default;
};

/// What both have in common; empty if nothing.
[[nodiscard]] Rectangle intersection(const Rectangle &a, const Rectangle &b);

struct Display
{
    Rectangle area;
    bool isPrimary = false;

    bool operator==(const Display &) const = default;
};

/// In the order in which people number them: the primary one, then the others from left to right, those above one
/// another from top to bottom. Without a primary one the leftmost is the first. Empty ones are left out.
[[nodiscard]] std::vector<Display> inOrder(std::vector<Display> displays);

/// The display of that number, counted from 1, of displays that are in order; throws CaptureError if there is none.
[[nodiscard]] Display numbered(const std::vector<Display> &displays, std::uint64_t number);

} // namespace orvalen
