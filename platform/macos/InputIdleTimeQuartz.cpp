#include "platform/macos/InputIdleTimeQuartz.h"

#include <CoreGraphics/CoreGraphics.h>

namespace orvalen {

std::optional<std::chrono::duration<double>> InputIdleTimeQuartz::sinceLastInput()
{
    return std::chrono::duration<double>(
        CGEventSourceSecondsSinceLastEventType(kCGEventSourceStateCombinedSessionState, kCGAnyInputEventType));
}

} // namespace orvalen
