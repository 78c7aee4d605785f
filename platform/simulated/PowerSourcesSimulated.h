#pragma once

#include "platform/PowerSources.h"

namespace orvalen {

class SimulatedLaptop;

/// The one battery of a simulated laptop.
class PowerSourcesSimulated : public PowerSources
{
public:
    explicit PowerSourcesSimulated(SimulatedLaptop &laptop) : laptop(laptop) {}
    std::vector<PowerSource> list() override;

private:
    SimulatedLaptop &laptop;
};

} // namespace orvalen
