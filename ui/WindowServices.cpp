#include "ui/WindowServices.h"

#include "core/AppState.h"
#include "core/ThermalEngine.h"
#include "mirroring/USBMirrorManager.h"
#include "platform/Platform.h"
#include "streaming/WebScreenServer.h"
#include "system/CaffeineManager.h"

namespace orvalen {

WindowServices WindowServices::shared()
{
    auto &platform = Platform::installed();
    return {
        .state = AppState::shared(),
        .webServer = WebScreenServer::shared(),
        .usbManager = USBMirrorManager::shared(),
        .caffeine = CaffeineManager::shared(),
        .urls = *platform.urls,
        .report = {ThermalEngine::shared(), *platform.dates, *platform.documents},
    };
}

} // namespace orvalen
