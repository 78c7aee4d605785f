#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvalen {

/// One temperature sensor's answer: the name that the machine gives it and what it reads, as raw as it came.
struct TemperatureReading
{
    std::string product; ///< Empty where the sensor has no name.
    double celsius = 0.0;
};

/// The machine's temperature sensors. Any thread, also several at once.
class TemperatureSensors
{
public:
    virtual ~TemperatureSensors() = default;

    /// Every sensor that answers now, in the machine's own order; a sensor that gives no number is left out.
    /// None at all: an empty list. Not available, or not within a bounded time (at most 0.5 s): std::nullopt.
    [[nodiscard]] virtual std::optional<std::vector<TemperatureReading>> read() = 0;
};

} // namespace orvalen
