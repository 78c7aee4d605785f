#pragma once

#include <string>

namespace orvalen {

/// Dates as the user writes them. Main thread only.
class LocalisedDates
{
public:
    virtual ~LocalisedDates() = default;

    /// The present day and time in the user's language and time zone (UTF-8): long date style, medium time style.
    [[nodiscard]] virtual std::string now() = 0;
};

} // namespace orvalen
