#pragma once

#include <CoreFoundation/CoreFoundation.h>

namespace orvalen::fake {

/// Hands an object over to the pool of this thread, which releases it when it ends. Without a pool nobody ever does, as
/// on a thread that lives on.
CFTypeRef autorelease(CFTypeRef object);

} // namespace orvalen::fake
