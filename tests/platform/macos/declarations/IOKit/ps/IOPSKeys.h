// The keys of a power source's description that our adapters read. Stands in for the system's header where there is
// none.
#pragma once

#define kIOPSPowerSourceStateKey "Power Source State"
#define kIOPSCurrentCapacityKey "Current Capacity"
