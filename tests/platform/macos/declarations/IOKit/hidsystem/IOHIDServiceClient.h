// What our adapters use of the HID event system's services, as its documentation gives it. Stands in for the system's
// header where there is none.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __IOHIDServiceClient *IOHIDServiceClientRef;

CFTypeRef IOHIDServiceClientCopyProperty(IOHIDServiceClientRef service, CFStringRef key);

#ifdef __cplusplus
}
#endif
