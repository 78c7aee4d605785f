#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>

namespace orvalen::fake {

/// What the formatter is made of, and what it writes.
struct DateFormatter
{
    CFAbsoluteTime present = 0.0;
    bool hasLocale = true;
    bool isMade = true;
    std::optional<std::string> text; ///< Of any moment.
};

DateFormatter &dateFormatter();

} // namespace orvalen::fake
