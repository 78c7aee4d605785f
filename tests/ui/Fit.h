#pragma once

#include <QWidget>

#include <string>
#include <vector>

namespace orvalen::test {

/// What is wrong with how the widgets of a window that is shown lie, one line each: what is cut off or squeezed, lies
/// upon its neighbour or beyond its parent, has a word broken in two, cannot be scrolled to or is too small to be hit.
[[nodiscard]] std::vector<std::string> misfits(const QWidget &window);

} // namespace orvalen::test
