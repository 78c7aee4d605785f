#include "system/HotKeyManager.h"

#include <iostream>

#include "core/AppState.h"
#include "platform/Platform.h"
#include "streaming/WebScreenServer.h"

namespace orvalen {

HotKeyManager::HotKeyManager(const Services &services) : services(services) {}

HotKeyManager::~HotKeyManager() = default;

HotKeyManager &HotKeyManager::shared()
{
    static auto &platform = Platform::installed();
    static auto *const manager = new HotKeyManager(
        {*platform.hotKeys, *platform.dispatch, AppState::shared(), WebScreenServer::shared(), std::cout});
    return *manager;
}

void HotKeyManager::setupGlobalHotKey()
{
    handlerRef =
        services.hotKeys.installHandler([this](const std::optional<HotKeyId> &pressed) { return handle(pressed); });
    warmupHotKeyRef = services.hotKeys.registerHotKey(warmupHotKey);
    castHotKeyRef = services.hotKeys.registerHotKey(castHotKey);
    services.console << "🛡️ Orvalen: Blind Hotkeys registered (Cmd+Option+W = Warmup, Cmd+Option+M = Blind Cast)"
                     << std::endl; // at once: whoever cannot see the screen may read it elsewhere
}

bool HotKeyManager::handle(const std::optional<HotKeyId> &pressed)
{
    const auto id = pressed.value_or(HotKeyId{}).id;
    // After the event, also where we are on the main thread already.
    if (id == warmupHotKey.identifier.id)
        services.dispatch.onMain([&state = services.state] { state.triggerWarmup(std::nullopt, false); });
    else if (id == castHotKey.identifier.id)
        services.dispatch.onMain([&server = services.webServer] { server.triggerBlindCast(); });
    return true;
}

} // namespace orvalen
