#pragma once

#include <Carbon/Carbon.h>

#include <optional>
#include <string>

namespace orvalen::fake {

/// Carbon's event manager, and the table of Apple events, as they are while this lives: one at a time. Ends with
/// nobody's handlers and hot keys, whatever is left of them.
class Carbon
{
public:
    Carbon();
    ~Carbon();
    Carbon(const Carbon &) = delete;
    Carbon &operator=(const Carbon &) = delete;

    // What it answers.
    bool hasTarget = true;
    OSStatus installing = noErr;
    OSStatus registering = noErr;
    OSErr installingAppleEvent = noErr;

    /// What a person presses. The sum of what handlers answered, as the event manager sees it: the first that handles
    /// the event ends its way. std::nullopt if that key is nobody's, or nobody is told.
    std::optional<OSStatus> press(UInt32 keyCode, UInt32 modifiers);

    /// An event that handlers are told of; std::nullopt: one that does not tell which key it was.
    std::optional<OSStatus> deliver(const std::optional<EventHotKeyID> &identifier);
    std::optional<OSStatus> deliverNull();

    /// What the system sends when somebody opens the program again. errAEEventNotHandled if nobody is there for it.
    OSErr reopen();

    /// Event handlers, hot keys and handlers of Apple events that somebody has not given back.
    [[nodiscard]] int outstanding() const;
};

} // namespace orvalen::fake
