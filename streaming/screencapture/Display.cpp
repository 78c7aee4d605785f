#include "streaming/screencapture/Display.h"

#include <algorithm>
#include <string>
#include <tuple>

#include "streaming/screencapture/CaptureError.h"

namespace orvalen {

Rectangle intersection(const Rectangle &a, const Rectangle &b)
{
    const int left = std::max(a.x, b.x);
    const int top = std::max(a.y, b.y);
    const int right = std::min(a.x + a.width, b.x + b.width);
    const int bottom = std::min(a.y + a.height, b.y + b.height);
    return right > left && bottom > top ? Rectangle{left, top, right - left, bottom - top} : Rectangle{};
}

std::vector<Display> inOrder(std::vector<Display> displays)
{
    std::erase_if(displays, [](const Display &display) { return display.area.isEmpty(); });
    std::stable_sort(displays.begin(), displays.end(), [](const Display &a, const Display &b) {
        return std::tuple(!a.isPrimary, a.area.x, a.area.y) < std::tuple(!b.isPrimary, b.area.x, b.area.y);
    });
    return displays;
}

Display numbered(const std::vector<Display> &displays, std::uint64_t number)
{
    if (number >= 1 && number <= displays.size())
        return displays[number - 1];
    throw CaptureError("There is no display " + std::to_string(number) + "; there " +
                       (displays.size() == 1 ? "is 1." : "are " + std::to_string(displays.size()) + '.'));
}

} // namespace orvalen
