#pragma once

#include "platform/InputIdleTime.h"

namespace orvalen {

class SimulatedLaptop;

/// The user of a simulated laptop: busy with it, or gone.
class InputIdleTimeSimulated : public InputIdleTime
{
public:
    explicit InputIdleTimeSimulated(SimulatedLaptop &laptop) : laptop(laptop) {}
    std::optional<std::chrono::duration<double>> sinceLastInput() override;

private:
    SimulatedLaptop &laptop;
};

} // namespace orvalen
