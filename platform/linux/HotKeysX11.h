#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/HotKeys.h"

namespace orvalen {

class Dispatch;

/// Keys grabbed on an X server, whatever toolkit shows the windows. A thread of its own talks to the server and brings
/// each press to the main thread: so a server that hangs holds up nobody for longer than the time given, what it grants
/// late is ours all the same, and one that dies takes the keys along and nothing else.
class HotKeysX11 : public HotKeys
{
public:
    /// For `display`, or the one that the environment names where it is empty. `dispatch` must outlive this and every
    /// handle. `patience`: how long a handler and its keys together wait for the server's answers.
    explicit HotKeysX11(Dispatch &dispatch, std::string display = {},
                        std::chrono::milliseconds patience = std::chrono::milliseconds(250));
    ~HotKeysX11() override;

    /// Connects. Null where there is no server, or none that hears every key.
    [[nodiscard]] std::unique_ptr<HotKeyHandle> installHandler(Handler handler) override;

    /// Null without a handler, too. A granted key follows its letter when the keyboard's layout changes, and comes back
    /// if a layout did not have it. Of several layouts, the one in effect says which key it is; the places that it has
    /// in the others are taken as well.
    [[nodiscard]] std::unique_ptr<HotKeyHandle> registerHotKey(const HotKey &key) override;

private:
    class Listener;
    class HandlerHandle;
    class KeyHandle;

    Dispatch &dispatch;
    const std::string display;
    const std::chrono::milliseconds patience;
    std::weak_ptr<Listener> listener; ///< Of the latest handler; belongs to the handles.
    std::uint64_t lastNumber = 0;
};

} // namespace orvalen
