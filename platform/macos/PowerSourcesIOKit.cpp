#include "platform/macos/PowerSourcesIOKit.h"

#include <IOKit/ps/IOPSKeys.h>
#include <IOKit/ps/IOPowerSources.h>

#include <algorithm>
#include <cstdlib>

#include "platform/macos/AutoreleasePool.h"
#include "platform/macos/CoreFoundationOwned.h"

namespace orvalen {

using corefoundation::isOf;
using corefoundation::Owned;
using corefoundation::text;

namespace {

CFTypeRef orAbort(CFTypeRef object)
{
    if (!object)
        std::abort();
    return object;
}

bool hasTextForKeys(CFDictionaryRef dictionary)
{
    std::vector<CFTypeRef> keys(static_cast<std::size_t>(CFDictionaryGetCount(dictionary)));
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), nullptr);
    return std::all_of(keys.begin(), keys.end(), [](CFTypeRef key) { return isOf(CFStringGetTypeID(), key); });
}

PowerSource described(CFDictionaryRef description)
{
    PowerSource source;
    const CFTypeRef state = CFDictionaryGetValue(description, CFSTR(kIOPSPowerSourceStateKey));
    if (isOf(CFStringGetTypeID(), state))
        source.state = text(state);
    const CFTypeRef capacity = CFDictionaryGetValue(description, CFSTR(kIOPSCurrentCapacityKey));
    std::int64_t percent = 0;
    // False where the number does not fit into one without a fraction.
    if (isOf(CFNumberGetTypeID(), capacity) &&
        CFNumberGetValue(static_cast<CFNumberRef>(capacity), kCFNumberSInt64Type, &percent))
        source.currentCapacity = percent;
    return source;
}

} // namespace

std::vector<PowerSource> PowerSourcesIOKit::list()
{
    const AutoreleasePool pool;
    const Owned blob(orAbort(IOPSCopyPowerSourcesInfo()));
    const Owned sources(static_cast<CFArrayRef>(orAbort(IOPSCopyPowerSourcesList(blob.get()))));

    std::vector<PowerSource> list;
    const auto count = CFArrayGetCount(sources.get());
    for (CFIndex i = 0; i < count; ++i) {
        // Not ours: it belongs to the blob.
        const CFTypeRef description =
            orAbort(IOPSGetPowerSourceDescription(blob.get(), CFArrayGetValueAtIndex(sources.get(), i)));
        if (!isOf(CFDictionaryGetTypeID(), description))
            continue;
        const auto dictionary = static_cast<CFDictionaryRef>(description);
        if (hasTextForKeys(dictionary))
            list.push_back(described(dictionary));
    }
    return list;
}

} // namespace orvalen
