#include "platform/macos/HotKeysCarbon.h"

#include <Carbon/Carbon.h>

#include <utility>

namespace orvalen {

namespace {

static_assert(HotKey::commandKey == cmdKey && HotKey::optionKey == optionKey);

/// The key that was pressed; nothing where the event does not tell.
std::optional<HotKeyId> identifierIn(EventRef event)
{
    EventHotKeyID pressed{};
    if (GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof pressed, nullptr,
                          &pressed) != noErr)
        return std::nullopt;
    return HotKeyId{pressed.signature, pressed.id};
}

OSStatus hotKeyPressed(EventHandlerCallRef, EventRef event, void *);

class InstalledHandler : public HotKeyHandle
{
public:
    explicit InstalledHandler(HotKeys::Handler handler) : handler(std::move(handler)) {}
    InstalledHandler(const InstalledHandler &) = delete;
    InstalledHandler &operator=(const InstalledHandler &) = delete;
    ~InstalledHandler() override
    {
        if (latest != this)
            return;
        RemoveEventHandler(reference);
        latest = nullptr;
    }

    [[nodiscard]] bool install(EventTargetRef target)
    {
        const EventTypeSpec presses{kEventClassKeyboard, kEventHotKeyPressed};
        if (latest)
            reference = latest->reference;
        else if (InstallEventHandler(target, hotKeyPressed, 1, &presses, nullptr, &reference) != noErr)
            return false;
        latest = this;
        return true;
    }

    static inline InstalledHandler *latest = nullptr; ///< Main thread only.

    const HotKeys::Handler handler;

private:
    EventHandlerRef reference = nullptr; ///< That of the latest is the one that is installed.
};

OSStatus hotKeyPressed(EventHandlerCallRef, EventRef event, void *)
{
    if (!event)
        return noErr;
    const auto handler = InstalledHandler::latest->handler; // a copy: it may give itself back
    if (handler(identifierIn(event)))
        return noErr;
    return eventNotHandledErr;
}

class RegisteredHotKey : public HotKeyHandle
{
public:
    explicit RegisteredHotKey(EventHotKeyRef reference) : reference(reference) {}
    RegisteredHotKey(const RegisteredHotKey &) = delete;
    RegisteredHotKey &operator=(const RegisteredHotKey &) = delete;
    ~RegisteredHotKey() override { UnregisterEventHotKey(reference); }

private:
    const EventHotKeyRef reference;
};

} // namespace

std::unique_ptr<HotKeyHandle> HotKeysCarbon::installHandler(Handler handler)
{
    auto installed = std::make_unique<InstalledHandler>(std::move(handler));
    auto *const target = GetApplicationEventTarget();
    if (!target || !installed->install(target))
        return nullptr;
    return installed;
}

std::unique_ptr<HotKeyHandle> HotKeysCarbon::registerHotKey(const HotKey &key)
{
    auto *const target = GetApplicationEventTarget();
    EventHotKeyRef reference = nullptr;
    if (!target || RegisterEventHotKey(key.keyCode, key.modifiers, {key.identifier.signature, key.identifier.id},
                                       target, kEventHotKeyNoOptions, &reference) != noErr)
        return nullptr;
    return std::make_unique<RegisteredHotKey>(reference);
}

} // namespace orvalen
