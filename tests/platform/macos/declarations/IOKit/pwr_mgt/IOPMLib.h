// What our adapters use of IOKit's power management, as its documentation gives it.
#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int IOReturn;
#define kIOReturnSuccess 0

typedef uint32_t IOPMAssertionID;
typedef uint32_t IOPMAssertionLevel;
enum
{
    kIOPMNullAssertionID = 0,
    kIOPMAssertionLevelOff = 0,
    kIOPMAssertionLevelOn = 255,
};
#define kIOPMAssertionTypePreventUserIdleSystemSleep CFSTR("PreventUserIdleSystemSleep")

IOReturn IOPMAssertionCreateWithName(CFStringRef AssertionType, IOPMAssertionLevel AssertionLevel,
                                     CFStringRef AssertionName, IOPMAssertionID *AssertionID);
IOReturn IOPMAssertionRelease(IOPMAssertionID AssertionID);

#ifdef __cplusplus
}
#endif
