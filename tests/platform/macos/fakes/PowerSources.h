#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <functional>
#include <vector>

namespace orvalen::fake {

/// The machine's power sources: each gives its description as a new object, or null. A description belongs to the blob
/// that it was asked of and goes with it. Calls are noted with their arguments, the sources as source1, source2, ...
struct PowerSourceList
{
    std::vector<std::function<CFTypeRef()>> descriptions = {};
    bool hasBlob = true;
    bool hasList = true;
};

void setPowerSources(PowerSourceList list);

} // namespace orvalen::fake
