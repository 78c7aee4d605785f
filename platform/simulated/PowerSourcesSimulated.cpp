#include "platform/simulated/PowerSourcesSimulated.h"

#include "platform/simulated/SimulatedLaptop.h"

namespace orvalen {

std::vector<PowerSource> PowerSourcesSimulated::list()
{
    return {laptop.powerSource()};
}

} // namespace orvalen
