// Off the Mac the compiler takes every version of macOS for present. Included before everything else there, this asks
// the fake instead.
#pragma once

namespace orvalen::fake {

/// macOS 13, until a test says otherwise.
void setSystemVersion(int major);

/// What @available says, of "macOS 14, *" and the like.
[[nodiscard]] bool isAvailable(const char *versions);

} // namespace orvalen::fake

#ifdef __OBJC__
#define available(...) selector(self) && ::orvalen::fake::isAvailable(#__VA_ARGS__)
#endif
