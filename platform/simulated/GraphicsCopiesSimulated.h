#pragma once

#include "platform/GraphicsCopies.h"

namespace orvalen {

class SimulatedLaptop;

/// A graphics device that lives in main memory: its copies are real ones by the processor, and counted.
class GraphicsCopiesSimulated : public GraphicsCopies
{
public:
    explicit GraphicsCopiesSimulated(SimulatedLaptop &laptop) : laptop(laptop) {}
    std::unique_ptr<GraphicsQueue> openDefaultQueue() override;

private:
    SimulatedLaptop &laptop;
};

} // namespace orvalen
