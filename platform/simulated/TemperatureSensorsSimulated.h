#pragma once

#include "platform/TemperatureSensors.h"

namespace orvalen {

class SimulatedLaptop;

/// The sensors of a simulated laptop.
class TemperatureSensorsSimulated : public TemperatureSensors
{
public:
    explicit TemperatureSensorsSimulated(SimulatedLaptop &laptop) : laptop(laptop) {}
    std::optional<std::vector<TemperatureReading>> read() override;

private:
    SimulatedLaptop &laptop;
};

} // namespace orvalen
