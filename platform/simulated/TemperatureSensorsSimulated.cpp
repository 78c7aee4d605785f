#include "platform/simulated/TemperatureSensorsSimulated.h"

#include "platform/simulated/SimulatedLaptop.h"

namespace orvalen {

std::optional<std::vector<TemperatureReading>> TemperatureSensorsSimulated::read()
{
    return laptop.sensorReadings();
}

} // namespace orvalen
