#pragma once

#include <iosfwd>
#include <memory>
#include <optional>

#include "platform/HotKeys.h"

namespace orvalen {

class AppState;
class Dispatch;
class WebScreenServer;

/// Two keys that work whatever program is in front and however black the screen is. Main thread only.
class HotKeyManager
{
public:
    /// What it needs. Everything must outlive it.
    struct Services
    {
        HotKeys &hotKeys;
        Dispatch &dispatch;
        AppState &state;
        WebScreenServer &webServer;
        std::ostream &console; ///< For the line that says which keys there are.
    };

    static constexpr HotKey warmupHotKey{13, HotKey::commandKey + HotKey::optionKey, {0x4F565231 /* OVR1 */, 1}}; // W
    static constexpr HotKey castHotKey{46, HotKey::commandKey + HotKey::optionKey, {0x4F565232 /* OVR2 */, 2}};   // M

    explicit HotKeyManager(const Services &services);
    virtual ~HotKeyManager();

    HotKeyManager(const HotKeyManager &) = delete;
    HotKeyManager &operator=(const HotKeyManager &) = delete;

    /// That of the installed platform, made on first use and never destroyed.
    [[nodiscard]] static HotKeyManager &shared();

    /// Once, when the program has started. A key that somebody else has stays theirs, silently.
    virtual void setupGlobalHotKey();

private:
    bool handle(const std::optional<HotKeyId> &pressed);

    Services services;
    std::unique_ptr<HotKeyHandle> warmupHotKeyRef;
    std::unique_ptr<HotKeyHandle> castHotKeyRef;
    std::unique_ptr<HotKeyHandle> handlerRef;
};

} // namespace orvalen
