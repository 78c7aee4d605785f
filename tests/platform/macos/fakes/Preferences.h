#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <string>

namespace orvalen::fake {

/// The user's defaults, of whatever application: the calls tell which one was asked for.
namespace preferences {

/// Takes `value` over; null takes the key away.
void put(const std::string &key, CFTypeRef value);

/// Whether what is set can be brought to the disk; it lasts for the run in any case.
void setWritable(bool isWritable);

/// Empty and writable again. Lets go of all values.
void clear();

} // namespace preferences

} // namespace orvalen::fake
