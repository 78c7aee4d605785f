#pragma once

#include <IOKit/pwr_mgt/IOPMLib.h>

namespace orvalen::fake {

/// What the power management answers.
struct PowerManagement
{
    IOReturn answer = kIOReturnSuccess;
    IOPMAssertionID granted = 1; ///< Written to the caller's place on success, and only then.
};

PowerManagement &powerManagement();

} // namespace orvalen::fake
