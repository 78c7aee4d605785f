#include "ui/kit/Formats.h"

#include <array>
#include <charconv>

namespace orvalen::kit {

QString oneDecimal(double value)
{
    std::array<char, 400> text{}; // the longest double has 309 digits before the point
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed, 1).ptr;
    return QString::fromLatin1(text.data(), end - text.data());
}

QString wholePart(double value)
{
    return QString::number(static_cast<qlonglong>(value));
}

} // namespace orvalen::kit
