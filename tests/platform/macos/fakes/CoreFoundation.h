#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace orvalen::fake {

/// Objects with references of their own, as Core Foundation's. What is made here is owned by whoever asked for it; an
/// array or a dictionary takes what it is given over.
///
/// To use an object after its last release, or to release one too often, ends the test.
[[nodiscard]] CFTypeRef makeString(const std::string &text);
[[nodiscard]] CFTypeRef makeNumber(std::int64_t value);
[[nodiscard]] CFTypeRef makeNumber(double value);
[[nodiscard]] CFTypeRef makeArray(std::vector<CFTypeRef> items);
[[nodiscard]] CFTypeRef makeDictionary(std::initializer_list<std::pair<CFTypeRef, CFTypeRef>> entries);

/// A thing of which only the system knows what is in it: a client, a service, an event. `name` tells them apart. What
/// it owns goes with it.
[[nodiscard]] CFTypeRef makeOpaque(const std::string &name, std::vector<CFTypeRef> owned = {});
[[nodiscard]] std::string nameOf(CFTypeRef opaque);

/// The text of a string object; "null" of none.
[[nodiscard]] std::string textOf(CFTypeRef string);

/// What an object holds, for the record of a call: {"PrimaryUsage": int 5}. Keys stand in the order in which they were
/// given; a number says of which kind it was made, int, int64 or double.
[[nodiscard]] std::string describe(CFTypeRef object);

/// "default", or "another": every function that makes something is given the default one.
[[nodiscard]] const char *describe(CFAllocatorRef allocator);

/// Objects that somebody still owns, constant strings aside. A test ends with as many as it began with.
[[nodiscard]] int living();

} // namespace orvalen::fake
