#pragma once

#include "platform/LocalisedDates.h"

namespace orvalen {

/// Dates in the user's language and region, with their own choices among the date formats, and in the zone where the
/// machine is: it is looked up anew each time, because people travel.
class LocalisedDatesCoreFoundation : public LocalisedDates
{
public:
    /// Empty where the system has no formatter, or cannot write the date.
    [[nodiscard]] std::string now() override;
};

} // namespace orvalen
