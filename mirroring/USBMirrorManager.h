#pragma once

#include <memory>
#include <string>
#include <vector>

#include "core/Published.h"
#include "mirroring/USBDeviceInfo.h"

namespace orvalen {

class Dispatch;
class SettingsPages;
class UsbTree;

/// The devices on a cable that can show this machine's screen, and the ways to the settings that matter to that. Main
/// thread only.
class USBMirrorManager : public Observable
{
public:
    /// What it needs. Everything must outlive it, and a scan that is under way.
    struct Services
    {
        Dispatch &dispatch;
        UsbTree &usb;
        SettingsPages &settingsPages;
    };

    /// Starts a scan at once.
    explicit USBMirrorManager(const Services &services);
    virtual ~USBMirrorManager();

    /// That of the installed platform, made on first use and never destroyed.
    [[nodiscard]] static USBMirrorManager &shared();

private:
    Services services;

public:
    Published<bool> isMirroringActive{*this, false};
    Published<std::vector<USBDeviceInfo>> connectedDevices{*this, {}};
    Published<std::string> mirrorStatusMessage{*this, "Ready to bridge"};

    /// Looks in the background; some seconds later there is a new list, never an empty one. Of several scans at once
    /// the one that ends last has the last word.
    virtual void scanConnectedDevices();

    virtual void openDisplaysSettings();
    virtual void openScreenRecordingSettings();
    virtual void openAccessibilitySettings();

    /// Shows the settings of the displays, where mirroring is switched on and off.
    virtual void toggleEmergencyMirror();

private:
    std::shared_ptr<USBMirrorManager *> self = std::make_shared<USBMirrorManager *>(this); // scans hold it weakly
};

} // namespace orvalen
