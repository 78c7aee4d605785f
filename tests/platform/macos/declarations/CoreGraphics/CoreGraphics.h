// What our adapters use of Core Graphics, as its documentation gives it.
#pragma once

#include <Availability.h>
#include <CoreFoundation/CoreFoundation.h>
#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

// Events
typedef enum CGEventSourceStateID : int32_t
{
    kCGEventSourceStatePrivate = -1,
    kCGEventSourceStateCombinedSessionState = 0,
    kCGEventSourceStateHIDSystemState = 1,
} CGEventSourceStateID;

typedef enum CGEventType : uint32_t
{
    kCGEventNull = 0,
} CGEventType;
#define kCGAnyInputEventType ((CGEventType)(~0u))

CFTimeInterval CGEventSourceSecondsSinceLastEventType(CGEventSourceStateID stateID, CGEventType eventType);

// Screen capture
bool CGPreflightScreenCaptureAccess(void) ORVALEN_MACOS_SINCE(11.0);
bool CGRequestScreenCaptureAccess(void) ORVALEN_MACOS_SINCE(11.0);

#ifdef __cplusplus
}
#endif
