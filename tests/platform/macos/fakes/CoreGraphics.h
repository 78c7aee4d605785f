#pragma once

#include <CoreGraphics/CoreGraphics.h>

namespace orvalen::fake {

/// What the window server answers.
struct CoreGraphics
{
    double secondsSinceLastEvent = 0.0;
    bool isCaptureGranted = false;
};

CoreGraphics &coreGraphics();

} // namespace orvalen::fake
