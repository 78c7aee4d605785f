#include "core/Decimals.h"

#include <array>
#include <charconv>

namespace orvalen {

namespace {

std::string withDecimals(double value, int decimals)
{
    std::array<char, 400> text{}; // the longest double has 309 digits before the point
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, decimals);
    return {text.data(), end.ptr};
}

} // namespace

std::string noDecimals(double value)
{
    return withDecimals(value, 0);
}

std::string oneDecimal(double value)
{
    return withDecimals(value, 1);
}

} // namespace orvalen
