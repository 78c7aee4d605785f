#pragma once

#include "platform/TemperatureSensors.h"

namespace orvalen {

/// The temperature services of IOKit's HID event system, in its order. Each read has a client of its own: one that
/// outlives a sleep of the machine goes on giving old values.
///
/// std::nullopt where there is no client, where it has no list of services, and on a system without one of the
/// functions that IOKit does not declare. A read of all sensors of a laptop takes some fifty milliseconds; it has no
/// bound of its own.
class TemperatureSensorsIOKit : public TemperatureSensors
{
public:
    [[nodiscard]] std::optional<std::vector<TemperatureReading>> read() override;
};

} // namespace orvalen
