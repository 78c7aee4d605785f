// What our adapters use of Carbon's events and of Apple events, as their documentation gives it. Stands in for the
// system's header where there is none; platform/macos/SystemContract.cpp compares the two on a Mac.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef uint32_t UInt32;
typedef int16_t SInt16;
typedef int32_t SInt32;
typedef SInt16 OSErr;
typedef SInt32 OSStatus;
typedef UInt32 OSType;
typedef UInt32 OptionBits;
typedef unsigned long ByteCount;
typedef unsigned long ItemCount;
typedef void *SRefCon;

// The system's constants stand in many enumerations without a name, in several headers. Two that are of one there are
// of one here, and no others: C++20 warns of those that are mixed.
enum
{
    noErr = 0,
};
enum
{
    paramErr = -50,
};
enum
{
    errAEEventNotHandled = -1708,
};
enum
{
    eventNotHandledErr = -9874,
    eventParameterNotFoundErr = -9870,
};
enum
{
    eventHotKeyExistsErr = -9878,
};

// Carbon's events
typedef struct OpaqueEventRef *EventRef;
typedef struct OpaqueEventTargetRef *EventTargetRef;
typedef struct OpaqueEventHandlerRef *EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef *EventHandlerCallRef;
typedef OSType EventParamName;
typedef OSType EventParamType;
typedef struct EventTypeSpec
{
    OSType eventClass;
    UInt32 eventKind;
} EventTypeSpec;

typedef OSStatus (*EventHandlerProcPtr)(EventHandlerCallRef inHandlerCallRef, EventRef inEvent, void *inUserData);
typedef EventHandlerProcPtr EventHandlerUPP;

enum
{
    kEventClassKeyboard = 0x6B657962, // 'keyb'
};
enum
{
    kEventParamDirectObject = 0x2D2D2D2D, // '----'
};
enum
{
    typeEventHotKeyID = 0x686B6964, // 'hkid'
};
enum
{
    kEventHotKeyPressed = 5,
};

EventTargetRef GetApplicationEventTarget(void);
OSStatus InstallEventHandler(EventTargetRef inTarget, EventHandlerUPP inHandler, ItemCount inNumTypes,
                             const EventTypeSpec *inList, void *inUserData, EventHandlerRef *outRef);
OSStatus RemoveEventHandler(EventHandlerRef inHandlerRef);
OSStatus GetEventParameter(EventRef inEvent, EventParamName inName, EventParamType inDesiredType,
                           EventParamType *outActualType, ByteCount inBufferSize, ByteCount *outActualSize,
                           void *outData);

// Hot keys
typedef struct OpaqueEventHotKeyRef *EventHotKeyRef;
typedef struct EventHotKeyID
{
    OSType signature;
    UInt32 id;
} EventHotKeyID;

enum
{
    cmdKey = 0x100,
    optionKey = 0x800,
};
enum
{
    kVK_ANSI_W = 0x0D,
    kVK_ANSI_M = 0x2E,
};
enum
{
    kEventHotKeyNoOptions = 0,
};

OSStatus RegisterEventHotKey(UInt32 inHotKeyCode, UInt32 inHotKeyModifiers, EventHotKeyID inHotKeyID,
                             EventTargetRef inTarget, OptionBits inOptions, EventHotKeyRef *outRef);
OSStatus UnregisterEventHotKey(EventHotKeyRef inHotKey);

// Apple events
typedef OSType AEEventClass;
typedef OSType AEEventID;
typedef struct AEDesc AEDesc;
typedef AEDesc AppleEvent;

typedef OSErr (*AEEventHandlerProcPtr)(const AppleEvent *theAppleEvent, AppleEvent *reply, SRefCon handlerRefcon);
typedef AEEventHandlerProcPtr AEEventHandlerUPP;

enum
{
    kCoreEventClass = 0x61657674, // 'aevt'
};
enum
{
    kAEReopenApplication = 0x72617070, // 'rapp'
};

OSErr AEInstallEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID, AEEventHandlerUPP handler,
                            SRefCon handlerRefcon, Boolean isSysHandler);
OSErr AERemoveEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID, AEEventHandlerUPP handler,
                           Boolean isSysHandler);

#ifdef __cplusplus
}
#endif
