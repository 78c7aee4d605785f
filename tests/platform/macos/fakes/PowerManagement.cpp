#include "tests/platform/macos/fakes/PowerManagement.h"

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"

namespace orvalen::fake {

PowerManagement &powerManagement()
{
    static PowerManagement answers;
    return answers;
}

} // namespace orvalen::fake

using namespace orvalen;

IOReturn IOPMAssertionCreateWithName(CFStringRef AssertionType, IOPMAssertionLevel AssertionLevel,
                                     CFStringRef AssertionName, IOPMAssertionID *AssertionID)
{
    fake::note("IOPMAssertionCreateWithName %s %u \"%s\" from %u", fake::textOf(AssertionType).c_str(), AssertionLevel,
               fake::textOf(AssertionName).c_str(), *AssertionID);
    if (fake::powerManagement().answer == kIOReturnSuccess)
        *AssertionID = fake::powerManagement().granted;
    return fake::powerManagement().answer;
}

IOReturn IOPMAssertionRelease(IOPMAssertionID AssertionID)
{
    fake::note("IOPMAssertionRelease %u", AssertionID);
    return fake::powerManagement().answer;
}
