#include "tests/platform/macos/fakes/HidEvents.h"

#include <cinttypes>
#include <map>
#include <mutex>
#include <utility>

#include "platform/macos/HidEvents.h"
#include "tests/platform/macos/fakes/AutoreleasePool.h"
#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"

namespace orvalen::fake {

namespace {

struct Handle
{
    CFTypeRef client = nullptr;
    std::size_t index = 0;
};

std::mutex mutex; // Guards all that follows.
HidSystem hidSystem;
int clients = 0;
std::map<CFTypeRef, Handle> services;
std::map<CFTypeRef, double> values;

template <typename Reference>
Reference made(const std::string &name)
{
    return static_cast<Reference>(const_cast<void *>(makeOpaque(name)));
}

std::string numbered(const char *word, std::size_t index)
{
    return word + std::to_string(index + 1);
}

/// Its index; ends the test if the service or its client is gone.
std::size_t indexOf(IOHIDServiceClientRef service)
{
    const std::lock_guard lock(mutex);
    const auto &handle = services.at(service);
    (void)nameOf(service);
    (void)nameOf(handle.client);
    return handle.index;
}

} // namespace

void setHidSystem(HidSystem system)
{
    const std::lock_guard lock(mutex);
    hidSystem = std::move(system);
    clients = 0;
}

} // namespace orvalen::fake

using namespace orvalen::fake;

IOHIDEventSystemClientRef IOHIDEventSystemClientCreate(CFAllocatorRef allocator)
{
    note("IOHIDEventSystemClientCreate %s", describe(allocator));
    const std::lock_guard lock(mutex);
    if (!hidSystem.hasClient)
        return nullptr;
    return made<IOHIDEventSystemClientRef>("client" + std::to_string(++clients));
}

void IOHIDEventSystemClientSetMatching(IOHIDEventSystemClientRef client, CFDictionaryRef matching)
{
    note("IOHIDEventSystemClientSetMatching " + nameOf(client) + ' ' + describe(matching));
}

CFArrayRef IOHIDEventSystemClientCopyServices(IOHIDEventSystemClientRef client)
{
    note("IOHIDEventSystemClientCopyServices " + nameOf(client));
    const std::lock_guard lock(mutex);
    if (hidSystem.list == HidSystem::List::null)
        return nullptr;
    if (hidSystem.list == HidSystem::List::noArray)
        return static_cast<CFArrayRef>(makeString("no array"));
    std::vector<CFTypeRef> list;
    for (std::size_t i = 0; i < hidSystem.services.size(); ++i) {
        list.push_back(makeOpaque(numbered("service", i)));
        services[list.back()] = {client, i};
    }
    return static_cast<CFArrayRef>(makeArray(std::move(list)));
}

CFTypeRef IOHIDServiceClientCopyProperty(IOHIDServiceClientRef service, CFStringRef key)
{
    const auto index = indexOf(service);
    note("IOHIDServiceClientCopyProperty " + nameOf(service) + ' ' + textOf(key));
    // On the way to an answer the system makes objects that only a pool gives back.
    (void)autorelease(makeString("on the way"));
    const std::lock_guard lock(mutex);
    const auto &product = hidSystem.services.at(index).product;
    if (const auto *const text = std::get_if<std::string>(&product))
        return makeString(*text);
    if (const auto *const number = std::get_if<std::int64_t>(&product))
        return makeNumber(*number);
    return nullptr;
}

IOHIDEventRef IOHIDServiceClientCopyEvent(IOHIDServiceClientRef service, std::int64_t type, std::int32_t options,
                                          std::int64_t timestamp)
{
    const auto index = indexOf(service);
    note("IOHIDServiceClientCopyEvent %s %" PRId64 " %" PRId32 " %" PRId64, nameOf(service).c_str(), type, options,
         timestamp);
    const std::lock_guard lock(mutex);
    const auto &value = hidSystem.services.at(index).value;
    if (!value)
        return nullptr;
    auto *const event = made<IOHIDEventRef>(numbered("event", index));
    values[event] = *value;
    return event;
}

double IOHIDEventGetFloatValue(IOHIDEventRef event, std::int32_t field)
{
    note("IOHIDEventGetFloatValue %s %" PRId32, nameOf(event).c_str(), field);
    const std::lock_guard lock(mutex);
    return values.at(event);
}
