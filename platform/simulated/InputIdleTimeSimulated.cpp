#include "platform/simulated/InputIdleTimeSimulated.h"

#include "platform/simulated/SimulatedLaptop.h"

namespace orvalen {

std::optional<std::chrono::duration<double>> InputIdleTimeSimulated::sinceLastInput()
{
    return laptop.sinceLastInput();
}

} // namespace orvalen
