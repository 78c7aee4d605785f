#include "core/OneDecimal.h"

#include <array>
#include <charconv>

namespace orvalen {

std::string oneDecimal(double value)
{
    std::array<char, 400> text{}; // the longest double has 309 digits before the point
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 1).ptr;
    return {text.data(), end};
}

} // namespace orvalen
