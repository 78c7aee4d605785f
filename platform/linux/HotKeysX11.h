#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/HotKeys.h"

namespace orvalen {

class Dispatch;

/// Keys grabbed on an X server, whatever toolkit shows the windows. A thread of its own talks to the server and brings
/// each press to the main thread: so a server that hangs holds up nobody for longer than the time given, and one that
/// dies takes the keys along and nothing else.
class HotKeysX11 : public HotKeys
{
public:
    /// For `display`, or the one that the environment names where it is empty. `dispatch` must outlive this and every
    /// handle. `patience`: how long each operation waits for the server.
    explicit HotKeysX11(Dispatch &dispatch, std::string display = {},
                        std::chrono::milliseconds patience = std::chrono::seconds(1));
    ~HotKeysX11() override;

    /// Connects. Null where there is no server, none that hears every key, or no answer in time.
    [[nodiscard]] std::unique_ptr<HotKeyHandle> installHandler(Handler handler) override;

    /// Null without a handler, too. A granted key follows its letter when the keyboard's layout changes, and comes back
    /// if a layout did not have it.
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
