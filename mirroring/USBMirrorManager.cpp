#include "mirroring/USBMirrorManager.h"

#include <utility>

#include "mirroring/SecondScreens.h"
#include "platform/Dispatch.h"
#include "platform/Platform.h"
#include "platform/SettingsPages.h"
#include "platform/UsbTree.h"

namespace orvalen {

namespace {

std::vector<USBDeviceInfo> devicesIn(UsbTree &usb)
{
    std::vector<USBDeviceInfo> devices;
    try {
        parseTree(usb.read(), devices);
    } catch (...) { // NOLINT(bugprone-empty-catch): then those that were found so far
    }
    if (devices.empty())
        devices.push_back(placeholderDevice());
    return devices;
}

} // namespace

USBMirrorManager &USBMirrorManager::shared()
{
    static auto &manager = []() -> USBMirrorManager & {
        auto &platform = Platform::installed();
        return *new USBMirrorManager({*platform.dispatch, *platform.usb, *platform.settingsPages});
    }();
    return manager;
}

USBMirrorManager::USBMirrorManager(const Services &services) : services(services)
{
    USBMirrorManager::scanConnectedDevices();
}

USBMirrorManager::~USBMirrorManager() = default;

void USBMirrorManager::scanConnectedDevices()
{
    try {
        services.dispatch.concurrently(
            QualityOfService::userInitiated,
            [weak = std::weak_ptr(self), &usb = services.usb, &dispatch = services.dispatch] {
                dispatch.onMain([weak, devices = devicesIn(usb)] {
                    if (const auto alive = weak.lock())
                        (*alive)->connectedDevices = devices;
                });
            });
    } catch (...) { // NOLINT(bugprone-empty-catch): no thread to be had: the list stays as it is
    }
}

void USBMirrorManager::openDisplaysSettings()
{
    // The older address is for systems that cannot make sense of the newer one. Whether a page appeared nobody knows.
    if (!services.settingsPages.open(settings_urls::displays))
        services.settingsPages.open(settings_urls::olderDisplays);
}

void USBMirrorManager::openScreenRecordingSettings()
{
    services.settingsPages.open(settings_urls::screenRecording);
}

void USBMirrorManager::openAccessibilitySettings()
{
    services.settingsPages.open(settings_urls::accessibility);
}

void USBMirrorManager::toggleEmergencyMirror()
{
    openDisplaysSettings();
}

} // namespace orvalen
