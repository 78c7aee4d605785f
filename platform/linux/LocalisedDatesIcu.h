#pragma once

#include <chrono>
#include <functional>

#include "platform/LocalisedDates.h"

namespace orvalen {

/// Dates by ICU. The language is the one of the environment's category for times, the zone that of TZ or else the
/// machine's; both are looked up anew each time: people travel.
class LocalisedDatesIcu : public LocalisedDates
{
public:
    using Time = std::chrono::system_clock::time_point;

    explicit LocalisedDatesIcu(std::function<Time()> present = std::chrono::system_clock::now);

    [[nodiscard]] std::string now() override;

private:
    std::function<Time()> present;
};

} // namespace orvalen
