// Dates as text, and what they depend on: the present moment, the user's locale, the machine's time zone.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);

typedef const struct __CFLocale *CFLocaleRef;
CFLocaleRef CFLocaleCopyCurrent(void);

void CFTimeZoneResetSystem(void);

typedef struct __CFDateFormatter *CFDateFormatterRef;
typedef enum CFDateFormatterStyle : CFIndex
{
    kCFDateFormatterNoStyle = 0,
    kCFDateFormatterShortStyle = 1,
    kCFDateFormatterMediumStyle = 2,
    kCFDateFormatterLongStyle = 3,
    kCFDateFormatterFullStyle = 4,
} CFDateFormatterStyle;
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale, CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle);
CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef allocator, CFDateFormatterRef formatter,
                                                        CFAbsoluteTime at);

#ifdef __cplusplus
}
#endif
