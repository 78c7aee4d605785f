#pragma once

namespace orvalen::fake {

/// What the graphics system has to give.
struct GraphicsSystem
{
    bool hasDevice = true;
    bool hasQueue = true;
    int buffers = 2; ///< So many, then no more. The first is called A in the calls, the next one B.
    bool hasCommandBuffers = true;
    bool hasEncoders = true;
};

/// The system from now on.
void setGraphicsSystem(const GraphicsSystem &graphicsSystem);

} // namespace orvalen::fake
