#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <functional>

namespace orvalen::fake {

/// The pool of this thread does it when it ends, the last one first. Without a pool nobody ever does, as on a thread
/// that lives on. The same pools serve objects of Core Foundation and of Objective-C.
void leaveToPool(std::function<void()> release);

/// Hands an object over to the pool of this thread.
CFTypeRef autorelease(CFTypeRef object);

} // namespace orvalen::fake
