// What our adapters use of the HID event system's clients, as its documentation gives it. Stands in for the system's
// header where there is none.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __IOHIDEventSystemClient *IOHIDEventSystemClientRef;

CFArrayRef IOHIDEventSystemClientCopyServices(IOHIDEventSystemClientRef client);

#ifdef __cplusplus
}
#endif
