#pragma once

#include <functional>
#include <ostream>
#include <vector>

#include "tests/support/StreamFakes.h"
#include "tests/ui/Dashboard.h"

namespace orvalen::test {

/// The numbers of the tabs, in the order of their buttons.
inline constexpr int tabs[] = {0, 4, 1, 2, 3};

/// The window as a person may find it.
struct Scene
{
    const char *name;
    std::function<void(Dashboard &)> set; ///< On a window that nothing has been done to.

    friend std::ostream &operator<<(std::ostream &out, const Scene &scene) { return out << scene.name; }
};

/// In a Wi-Fi network, with the permission to show the screen.
inline void plain(Dashboard &dashboard)
{
    dashboard.machine.interfaces.entries = {{networkInterface("en0", "192.168.1.20")}};
    dashboard.machine.captureAccess.granted = true;
    dashboard.webServer.refreshIPs();
    dashboard.state.isAcConnected = true;
}

inline void withPhone(Dashboard &dashboard)
{
    plain(dashboard);
    dashboard.machine.interfaces.entries->push_back(networkInterface("en5", "172.20.10.2"));
    dashboard.webServer.refreshIPs();
}

/// As much as the window can show at once.
inline void full(Dashboard &dashboard)
{
    withPhone(dashboard);
    dashboard.machine.captureAccess.granted = false;
    dashboard.webServer.isRunning = true;
    dashboard.webServer.refreshIPs();
    dashboard.state.reportStatus = "Saved to Desktop & Opened in Safari!";
}

inline void warming(Dashboard &dashboard)
{
    plain(dashboard);
    dashboard.state.isWarmingUp = true;
    dashboard.state.warmupProgress = 0.5;
    dashboard.state.currentPulseTemp = 38.8;
}

inline const std::vector<Scene> &scenes()
{
    static const std::vector<Scene> all{
        {"plain", plain},
        {"warming", warming},
        {"reached",
         [](Dashboard &dashboard) {
             plain(dashboard);
             dashboard.setBridge(41.0, 46.2);
         }},
        {"awayOnBattery",
         [](Dashboard &dashboard) {
             plain(dashboard);
             dashboard.state.isAcConnected = false;
             dashboard.state.batteryPercent = 64;
             dashboard.state.isUserAway = true;
             dashboard.state.smartModeEnabled = false;
             dashboard.caffeine.toggle();
         }},
        {"streaming",
         [](Dashboard &dashboard) {
             plain(dashboard);
             dashboard.webServer.isRunning = true;
         }},
        {"withPhone", withPhone},
        {"full", full},
    };
    return all;
}

} // namespace orvalen::test
