#include "platform/macos/TemperatureSensorsIOKit.h"

#include <array>

#include "platform/macos/AutoreleasePool.h"
#include "platform/macos/CoreFoundationOwned.h"
#include "platform/macos/HidEvents.h"

namespace orvalen {

using corefoundation::isOf;
using corefoundation::Owned;
using corefoundation::text;

namespace {

bool isInThisSystem()
{
    return IOHIDEventSystemClientCreate && IOHIDEventSystemClientSetMatching && IOHIDServiceClientCopyEvent &&
           IOHIDEventGetFloatValue;
}

Owned<CFDictionaryRef> temperatureServices()
{
    const Owned page(CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &hid::vendorPage));
    const Owned usage(CFNumberCreate(kCFAllocatorDefault, kCFNumberIntType, &hid::temperatureSensor));
    std::array<const void *, 2> keys{CFSTR("PrimaryUsagePage"), CFSTR("PrimaryUsage")};
    std::array<const void *, 2> values{page.get(), usage.get()};
    return Owned(CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(), keys.size(),
                                    &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

} // namespace

std::optional<std::vector<TemperatureReading>> TemperatureSensorsIOKit::read()
{
    if (!isInThisSystem())
        return std::nullopt;
    const AutoreleasePool pool;
    const Owned client(IOHIDEventSystemClientCreate(kCFAllocatorDefault));
    if (!client)
        return std::nullopt;
    IOHIDEventSystemClientSetMatching(client.get(), temperatureServices().get());
    const Owned services(IOHIDEventSystemClientCopyServices(client.get()));
    if (!isOf(CFArrayGetTypeID(), services.get()))
        return std::nullopt;

    std::vector<TemperatureReading> readings;
    const auto count = CFArrayGetCount(services.get());
    for (CFIndex i = 0; i < count; ++i) {
        auto *const service =
            static_cast<IOHIDServiceClientRef>(const_cast<void *>(CFArrayGetValueAtIndex(services.get(), i)));
        const Owned product(IOHIDServiceClientCopyProperty(service, CFSTR("Product")));
        const Owned event(IOHIDServiceClientCopyEvent(service, hid::temperatureEvent, 0, 0));
        if (event)
            readings.push_back({.product = text(product.get()),
                                .celsius = IOHIDEventGetFloatValue(event.get(), hid::temperatureLevel)});
    }
    return readings;
}

} // namespace orvalen
