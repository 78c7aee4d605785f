// What the adapters of this folder take for granted of the system: the types of its functions, its constants, the shape
// of its structures. On a Mac the system's own headers stand here, and a build ends where they say something else; on
// any other system it is our own declarations that are compared. One section for each framework.
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <IOKit/hidsystem/IOHIDEventSystemClient.h>
#include <IOKit/hidsystem/IOHIDServiceClient.h>
#include <IOKit/ps/IOPSKeys.h>
#include <IOKit/ps/IOPowerSources.h>
#include <IOKit/pwr_mgt/IOPMLib.h>
#include <pthread/qos.h>
#include <sys/qos.h>
#include <sys/sysctl.h>

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

#include "platform/macos/SystemContract.h"

namespace orvalen::system_contract {

namespace {

// Core Foundation
static_assert(is<Boolean, unsigned char> && is<UInt8, unsigned char>);
static_assert(is<CFIndex, long> && is<CFTypeID, unsigned long> && is<CFStringEncoding, unsigned>);
static_assert(is<CFOptionFlags, unsigned long> && is<CFHashCode, unsigned long>);
static_assert(is<CFTimeInterval, double> && is<CFAbsoluteTime, double>);
static_assert(is<CFTypeRef, const void *> && is<CFPropertyListRef, const void *>);

static_assert(sizeof(CFRange) == 16 && offsetof(CFRange, location) == 0 && offsetof(CFRange, length) == 8);
static_assert(is<decltype(CFRange::location), CFIndex> && is<decltype(CFRange::length), CFIndex>);
static_assert(is<decltype(CFRangeMake), CFRange(CFIndex, CFIndex)>);

static_assert(is<std::remove_const_t<decltype(kCFAllocatorDefault)>, CFAllocatorRef>);
static_assert(is<decltype(CFRetain), CFTypeRef(CFTypeRef)>);
static_assert(is<decltype(CFRelease), void(CFTypeRef)>);
static_assert(is<decltype(CFGetTypeID), CFTypeID(CFTypeRef)>);

static_assert(kCFStringEncodingUTF8 == 0x08000100);
static_assert(is<decltype(CFSTR("text")), CFStringRef>);
static_assert(is<decltype(CFStringGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFStringCreateWithBytes),
                 CFStringRef(CFAllocatorRef, const UInt8 *, CFIndex, CFStringEncoding, Boolean)>);
static_assert(is<decltype(CFStringGetLength), CFIndex(CFStringRef)>);
static_assert(is<decltype(CFStringGetBytes),
                 CFIndex(CFStringRef, CFRange, CFStringEncoding, UInt8, Boolean, UInt8 *, CFIndex, CFIndex *)>);
static_assert(is<decltype(CFStringGetDoubleValue), double(CFStringRef)>);

static_assert(isAs<CFNumberType, CFIndex>);
static_assert(kCFNumberSInt64Type == 4 && kCFNumberIntType == 9 && kCFNumberDoubleType == 13);
static_assert(is<decltype(CFNumberGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFNumberCreate), CFNumberRef(CFAllocatorRef, CFNumberType, const void *)>);
static_assert(is<decltype(CFNumberGetValue), Boolean(CFNumberRef, CFNumberType, void *)>);
static_assert(is<decltype(CFNumberIsFloatType), Boolean(CFNumberRef)>);

static_assert(is<std::remove_const_t<decltype(kCFBooleanTrue)>, CFBooleanRef>);
static_assert(is<std::remove_const_t<decltype(kCFBooleanFalse)>, CFBooleanRef>);
static_assert(is<decltype(CFBooleanGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFBooleanGetValue), Boolean(CFBooleanRef)>);

static_assert(is<decltype(CFArrayGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFArrayGetCount), CFIndex(CFArrayRef)>);
static_assert(is<decltype(CFArrayGetValueAtIndex), const void *(CFArrayRef, CFIndex)>);

static_assert(is<std::remove_const_t<decltype(kCFTypeDictionaryKeyCallBacks)>, CFDictionaryKeyCallBacks>);
static_assert(is<std::remove_const_t<decltype(kCFTypeDictionaryValueCallBacks)>, CFDictionaryValueCallBacks>);
static_assert(sizeof(CFDictionaryKeyCallBacks) == 48 && sizeof(CFDictionaryValueCallBacks) == 40);
static_assert(is<decltype(CFDictionaryGetTypeID), CFTypeID()>);
static_assert(is<decltype(CFDictionaryCreate),
                 CFDictionaryRef(CFAllocatorRef, const void **, const void **, CFIndex,
                                 const CFDictionaryKeyCallBacks *, const CFDictionaryValueCallBacks *)>);
static_assert(is<decltype(CFDictionaryGetCount), CFIndex(CFDictionaryRef)>);
static_assert(is<decltype(CFDictionaryGetValue), const void *(CFDictionaryRef, const void *)>);
static_assert(is<decltype(CFDictionaryGetKeysAndValues), void(CFDictionaryRef, const void **, const void **)>);

static_assert(is<decltype(CFAbsoluteTimeGetCurrent), CFAbsoluteTime()>);
static_assert(is<decltype(CFLocaleCopyCurrent), CFLocaleRef()>);
static_assert(is<decltype(CFTimeZoneResetSystem), void()>);
static_assert(isAs<CFDateFormatterStyle, CFIndex>);
static_assert(kCFDateFormatterNoStyle == 0 && kCFDateFormatterShortStyle == 1 && kCFDateFormatterMediumStyle == 2 &&
              kCFDateFormatterLongStyle == 3 && kCFDateFormatterFullStyle == 4);
static_assert(is<decltype(CFDateFormatterCreate),
                 CFDateFormatterRef(CFAllocatorRef, CFLocaleRef, CFDateFormatterStyle, CFDateFormatterStyle)>);
static_assert(is<decltype(CFDateFormatterCreateStringWithAbsoluteTime),
                 CFStringRef(CFAllocatorRef, CFDateFormatterRef, CFAbsoluteTime)>);

static_assert(is<std::remove_const_t<decltype(kCFPreferencesCurrentApplication)>, CFStringRef>);
static_assert(is<decltype(CFPreferencesCopyAppValue), CFPropertyListRef(CFStringRef, CFStringRef)>);
static_assert(is<decltype(CFPreferencesSetAppValue), void(CFStringRef, CFPropertyListRef, CFStringRef)>);
static_assert(is<decltype(CFPreferencesAppSynchronize), Boolean(CFStringRef)>);

// Core Graphics
static_assert(is<std::underlying_type_t<CGEventSourceStateID>, std::int32_t>);
static_assert(is<std::underlying_type_t<CGEventType>, std::uint32_t>);
static_assert(kCGEventSourceStatePrivate == -1 && kCGEventSourceStateCombinedSessionState == 0 &&
              kCGEventSourceStateHIDSystemState == 1 && kCGEventNull == 0);
static_assert(static_cast<std::uint32_t>(kCGAnyInputEventType) == 0xFFFFFFFF);
static_assert(is<decltype(CGEventSourceSecondsSinceLastEventType), CFTimeInterval(CGEventSourceStateID, CGEventType)>);
static_assert(is<decltype(CGPreflightScreenCaptureAccess), bool()>);
static_assert(is<decltype(CGRequestScreenCaptureAccess), bool()>);

// IOKit
static_assert(is<decltype(IOHIDEventSystemClientCopyServices), CFArrayRef(IOHIDEventSystemClientRef)>);
static_assert(is<decltype(IOHIDServiceClientCopyProperty), CFTypeRef(IOHIDServiceClientRef, CFStringRef)>);
static_assert(sizeof(IOHIDEventSystemClientRef) == 8 && std::is_pointer_v<IOHIDEventSystemClientRef>);
static_assert(sizeof(IOHIDServiceClientRef) == 8 && std::is_pointer_v<IOHIDServiceClientRef>);

static_assert(is<decltype(IOPSCopyPowerSourcesInfo), CFTypeRef()>);
static_assert(is<decltype(IOPSCopyPowerSourcesList), CFArrayRef(CFTypeRef)>);
static_assert(is<decltype(IOPSGetPowerSourceDescription), CFDictionaryRef(CFTypeRef, CFTypeRef)>);
static_assert(std::string_view(kIOPSPowerSourceStateKey) == "Power Source State");
static_assert(std::string_view(kIOPSCurrentCapacityKey) == "Current Capacity");

static_assert(is<IOReturn, int> && kIOReturnSuccess == 0);
static_assert(is<IOPMAssertionID, std::uint32_t> && is<IOPMAssertionLevel, std::uint32_t>);
static_assert(kIOPMNullAssertionID == 0 && kIOPMAssertionLevelOff == 0 && kIOPMAssertionLevelOn == 255);
static_assert(is<decltype(kIOPMAssertionTypePreventUserIdleSystemSleep), CFStringRef>);
static_assert(is<decltype(IOPMAssertionCreateWithName),
                 IOReturn(CFStringRef, IOPMAssertionLevel, CFStringRef, IOPMAssertionID *)>);
static_assert(is<decltype(IOPMAssertionRelease), IOReturn(IOPMAssertionID)>);

// Carbon
static_assert(is<UInt32, unsigned> && is<SInt16, short> && is<SInt32, int>);
static_assert(is<OSErr, short> && is<OSStatus, int> && is<OSType, unsigned> && is<OptionBits, unsigned>);
static_assert(is<ByteCount, unsigned long> && is<ItemCount, unsigned long> && is<SRefCon, void *>);
static_assert(is<EventParamName, OSType> && is<EventParamType, OSType>);
static_assert(noErr == 0 && paramErr == -50 && errAEEventNotHandled == -1708);
static_assert(eventNotHandledErr == -9874 && eventParameterNotFoundErr == -9870 && eventHotKeyExistsErr == -9878);

static_assert(sizeof(EventTypeSpec) == 8 && offsetof(EventTypeSpec, eventClass) == 0 &&
              offsetof(EventTypeSpec, eventKind) == 4);
static_assert(is<EventHandlerUPP, OSStatus (*)(EventHandlerCallRef, EventRef, void *)>);
static_assert(kEventClassKeyboard == 0x6B657962 && kEventHotKeyPressed == 5);
static_assert(kEventParamDirectObject == 0x2D2D2D2D && typeEventHotKeyID == 0x686B6964);
static_assert(is<decltype(GetApplicationEventTarget), EventTargetRef()>);
static_assert(is<decltype(InstallEventHandler), OSStatus(EventTargetRef, EventHandlerUPP, ItemCount,
                                                         const EventTypeSpec *, void *, EventHandlerRef *)>);
static_assert(is<decltype(RemoveEventHandler), OSStatus(EventHandlerRef)>);
static_assert(is<decltype(GetEventParameter),
                 OSStatus(EventRef, EventParamName, EventParamType, EventParamType *, ByteCount, ByteCount *, void *)>);

static_assert(sizeof(EventHotKeyID) == 8 && offsetof(EventHotKeyID, signature) == 0 &&
              offsetof(EventHotKeyID, id) == 4);
static_assert(cmdKey == 0x100 && optionKey == 0x800 && kVK_ANSI_W == 13 && kVK_ANSI_M == 46);
static_assert(kEventHotKeyNoOptions == 0);
static_assert(is<decltype(RegisterEventHotKey),
                 OSStatus(UInt32, UInt32, EventHotKeyID, EventTargetRef, OptionBits, EventHotKeyRef *)>);
static_assert(is<decltype(UnregisterEventHotKey), OSStatus(EventHotKeyRef)>);

static_assert(is<AEEventHandlerUPP, OSErr (*)(const AppleEvent *, AppleEvent *, SRefCon)>);
static_assert(kCoreEventClass == 0x61657674 && kAEReopenApplication == 0x72617070);
static_assert(is<decltype(AEInstallEventHandler), OSErr(AEEventClass, AEEventID, AEEventHandlerUPP, SRefCon, Boolean)>);
static_assert(is<decltype(AERemoveEventHandler), OSErr(AEEventClass, AEEventID, AEEventHandlerUPP, Boolean)>);

// Darwin
static_assert(isAs<qos_class_t, unsigned>);
static_assert(QOS_CLASS_USER_INTERACTIVE == 0x21 && QOS_CLASS_USER_INITIATED == 0x19);
static_assert(is<decltype(pthread_set_qos_class_self_np), int(qos_class_t, int)>);
static_assert(is<decltype(sysctlbyname), int(const char *, void *, std::size_t *, void *, std::size_t)>);

} // namespace

} // namespace orvalen::system_contract
