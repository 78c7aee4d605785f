#include "tests/platform/macos/fakes/CoreGraphics.h"

#include "tests/platform/macos/fakes/Calls.h"

namespace orvalen::fake {

CoreGraphics &coreGraphics()
{
    static CoreGraphics answers;
    return answers;
}

} // namespace orvalen::fake

using namespace orvalen;

CFTimeInterval CGEventSourceSecondsSinceLastEventType(CGEventSourceStateID stateID, CGEventType eventType)
{
    fake::note("CGEventSourceSecondsSinceLastEventType %d %u", int{stateID}, unsigned{eventType});
    return fake::coreGraphics().secondsSinceLastEvent;
}

bool CGPreflightScreenCaptureAccess()
{
    fake::note("CGPreflightScreenCaptureAccess");
    return fake::coreGraphics().isCaptureGranted;
}

bool CGRequestScreenCaptureAccess()
{
    fake::note("CGRequestScreenCaptureAccess");
    return fake::coreGraphics().isCaptureGranted;
}
