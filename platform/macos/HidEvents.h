#pragma once

#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>

#include <cstdint>

// What IOKit has, but declares in no header. Each is null on a system that has dropped it; ask before calling.
extern "C" {

typedef struct __IOHIDEvent *IOHIDEventRef;

/// Owned by the caller, or null.
[[gnu::weak]] IOHIDEventSystemClientRef IOHIDEventSystemClientCreate(CFAllocatorRef allocator);

/// The client keeps the dictionary, and lets go of it on a thread of its own.
[[gnu::weak]] void IOHIDEventSystemClientSetMatching(IOHIDEventSystemClientRef client, CFDictionaryRef matching);

/// Owned by the caller, or null.
[[gnu::weak]] IOHIDEventRef IOHIDServiceClientCopyEvent(IOHIDServiceClientRef service, std::int64_t type,
                                                        std::int32_t options, std::int64_t timestamp);

[[gnu::weak]] double IOHIDEventGetFloatValue(IOHIDEventRef event, std::int32_t field);
}

namespace orvalen::hid {

constexpr int vendorPage = 0xFF00;
constexpr int temperatureSensor = 5; ///< A usage on that page.

constexpr std::int64_t temperatureEvent = 15;
constexpr std::int32_t temperatureLevel = 15 << 16; ///< A field of that event, in degrees Celsius.

} // namespace orvalen::hid
