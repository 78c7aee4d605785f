#include "tests/platform/macos/fakes/Carbon.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/platform/macos/fakes/Calls.h"

struct OpaqueEventTargetRef
{
};

struct OpaqueEventRef
{
    std::optional<EventHotKeyID> identifier;
};

struct OpaqueEventHandlerRef
{
    EventHandlerUPP function;
    void *userData;
};

struct OpaqueEventHotKeyRef
{
    UInt32 keyCode;
    UInt32 modifiers;
    EventHotKeyID identifier;
};

namespace orvalen::fake {

namespace {

struct AppleEventHandler
{
    AEEventHandlerUPP function;
    SRefCon refcon;
};

struct Tables
{
    OpaqueEventTargetRef target;
    std::vector<std::unique_ptr<OpaqueEventHandlerRef>> handlers; // the latest last
    std::vector<std::unique_ptr<OpaqueEventHotKeyRef>> hotKeys;
    std::map<std::pair<AEEventClass, AEEventID>, AppleEventHandler> appleEvents;
};

Carbon *carbon = nullptr;
Tables tables;

[[noreturn]] void fail(const char *why)
{
    std::fprintf(stderr, "Carbon's fake: %s\n", why);
    std::abort();
}

Carbon &current()
{
    if (!carbon)
        fail("the test has made none");
    return *carbon;
}

std::string characters(OSType code)
{
    std::string text;
    for (const int shift : {24, 16, 8, 0})
        text += static_cast<char>(code >> shift & 0xFFU);
    return text;
}

const char *nameOf(EventTargetRef target)
{
    return target == &tables.target ? "application" : target ? "another target" : "null";
}

const char *presence(const void *pointer)
{
    return pointer ? "something" : "null";
}

/// What nobody may take for something that was given to him.
template <typename Reference>
Reference garbage()
{
    static char bytes[64];
    return reinterpret_cast<Reference>(bytes);
}

template <typename Thing>
bool giveBack(std::vector<std::unique_ptr<Thing>> &things, Thing *given)
{
    return std::erase_if(things, [&](const auto &thing) { return thing.get() == given; }) == 1;
}

std::optional<OSStatus> dispatch(EventRef event)
{
    std::optional<OSStatus> answer;
    std::vector<OpaqueEventHandlerRef> told; // copies: a handler may remove itself
    for (const auto &handler : tables.handlers)
        told.push_back(*handler);
    for (auto handler = told.rbegin(); handler != told.rend(); ++handler) {
        answer = handler->function(nullptr, event, handler->userData);
        if (answer != eventNotHandledErr)
            break;
    }
    return answer;
}

} // namespace

Carbon::Carbon()
{
    if (carbon)
        fail("there is one already");
    carbon = this;
    std::ignore = takeCalls();
}

Carbon::~Carbon()
{
    tables = {};
    carbon = nullptr;
}

std::optional<OSStatus> Carbon::press(UInt32 keyCode, UInt32 modifiers)
{
    for (const auto &key : tables.hotKeys)
        if (key->keyCode == keyCode && key->modifiers == modifiers)
            return deliver(key->identifier);
    return std::nullopt;
}

std::optional<OSStatus> Carbon::deliver(const std::optional<EventHotKeyID> &identifier)
{
    OpaqueEventRef event{identifier};
    return dispatch(&event);
}

std::optional<OSStatus> Carbon::deliverNull()
{
    return dispatch(nullptr);
}

OSErr Carbon::reopen()
{
    const auto found = tables.appleEvents.find({kCoreEventClass, kAEReopenApplication});
    if (found == tables.appleEvents.end())
        return errAEEventNotHandled;
    const auto handler = found->second;
    return handler.function(nullptr, nullptr, handler.refcon);
}

int Carbon::outstanding() const
{
    return static_cast<int>(tables.handlers.size() + tables.hotKeys.size() + tables.appleEvents.size());
}

} // namespace orvalen::fake

using namespace orvalen::fake;

EventTargetRef GetApplicationEventTarget()
{
    note("GetApplicationEventTarget");
    return current().hasTarget ? &tables.target : nullptr;
}

OSStatus InstallEventHandler(EventTargetRef inTarget, EventHandlerUPP inHandler, ItemCount inNumTypes,
                             const EventTypeSpec *inList, void *inUserData, EventHandlerRef *outRef)
{
    std::string types;
    for (ItemCount i = 0; i < inNumTypes; ++i)
        types += " " + characters(inList[i].eventClass) + " " + std::to_string(inList[i].eventKind);
    note("InstallEventHandler %s %lu%s %s", nameOf(inTarget), inNumTypes, types.c_str(), presence(inUserData));
    if (!inTarget || !inHandler || !outRef)
        fail("InstallEventHandler wants a target, a handler and a place for the reference");
    if (current().installing != noErr) {
        *outRef = garbage<EventHandlerRef>();
        return current().installing;
    }
    tables.handlers.push_back(std::make_unique<OpaqueEventHandlerRef>(OpaqueEventHandlerRef{inHandler, inUserData}));
    *outRef = tables.handlers.back().get();
    return noErr;
}

OSStatus RemoveEventHandler(EventHandlerRef inHandlerRef)
{
    note("RemoveEventHandler");
    if (!giveBack(tables.handlers, inHandlerRef))
        fail("a handler was removed that is not installed");
    return noErr;
}

OSStatus GetEventParameter(EventRef inEvent, EventParamName inName, EventParamType inDesiredType,
                           EventParamType *outActualType, ByteCount inBufferSize, ByteCount *outActualSize,
                           void *outData)
{
    note("GetEventParameter %s %s %s %lu %s", characters(inName).c_str(), characters(inDesiredType).c_str(),
         presence(outActualType), inBufferSize, presence(outActualSize));
    if (!inEvent || !outData)
        fail("GetEventParameter wants an event and a place for the parameter");
    const EventHotKeyID found = inEvent->identifier.value_or(EventHotKeyID{0xBAD, 1});
    std::memcpy(outData, &found, std::min<std::size_t>(inBufferSize, sizeof found));
    if (!inEvent->identifier)
        return eventParameterNotFoundErr;
    return noErr;
}

OSStatus RegisterEventHotKey(UInt32 inHotKeyCode, UInt32 inHotKeyModifiers, EventHotKeyID inHotKeyID,
                             EventTargetRef inTarget, OptionBits inOptions, EventHotKeyRef *outRef)
{
    note("RegisterEventHotKey %u %u %s %u %s %u", inHotKeyCode, inHotKeyModifiers,
         characters(inHotKeyID.signature).c_str(), inHotKeyID.id, nameOf(inTarget), inOptions);
    if (!inTarget || !outRef)
        fail("RegisterEventHotKey wants a target and a place for the reference");
    if (current().registering != noErr) {
        *outRef = garbage<EventHotKeyRef>();
        return current().registering;
    }
    tables.hotKeys.push_back(
        std::make_unique<OpaqueEventHotKeyRef>(OpaqueEventHotKeyRef{inHotKeyCode, inHotKeyModifiers, inHotKeyID}));
    *outRef = tables.hotKeys.back().get();
    return noErr;
}

OSStatus UnregisterEventHotKey(EventHotKeyRef inHotKey)
{
    note("UnregisterEventHotKey");
    if (!giveBack(tables.hotKeys, inHotKey))
        fail("a hot key was given back that is not registered");
    return noErr;
}

OSErr AEInstallEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID, AEEventHandlerUPP handler,
                            SRefCon handlerRefcon, Boolean isSysHandler)
{
    note("AEInstallEventHandler %s %s %s %u", characters(theAEEventClass).c_str(), characters(theAEEventID).c_str(),
         presence(handlerRefcon), isSysHandler);
    if (current().installingAppleEvent == noErr)
        tables.appleEvents[{theAEEventClass, theAEEventID}] = {handler, handlerRefcon};
    return current().installingAppleEvent;
}

OSErr AERemoveEventHandler(AEEventClass theAEEventClass, AEEventID theAEEventID, AEEventHandlerUPP handler,
                           Boolean isSysHandler)
{
    const auto found = tables.appleEvents.find({theAEEventClass, theAEEventID});
    const bool isThere = found != tables.appleEvents.end() && found->second.function == handler;
    note("AERemoveEventHandler %s %s %s %u", characters(theAEEventClass).c_str(), characters(theAEEventID).c_str(),
         isThere ? "the one there" : "another one", isSysHandler);
    if (!isThere)
        return errAEEventNotHandled;
    tables.appleEvents.erase(found);
    return noErr;
}
