#include "platform/macos/ScreenCaptureAccessQuartz.h"

#include <CoreGraphics/CoreGraphics.h>

namespace orvalen {

bool ScreenCaptureAccessQuartz::isGranted()
{
    return CGPreflightScreenCaptureAccess();
}

void ScreenCaptureAccessQuartz::request()
{
    CGRequestScreenCaptureAccess();
}

} // namespace orvalen
