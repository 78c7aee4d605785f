#pragma once

#include <functional>
#include <vector>

#include "tests/ui/Dashboard.h"

namespace orvalen::test {

/// The numbers of the tabs, as they stand in the window.
inline constexpr int allTabs[] = {0, 4, 1, 2, 3};

/// One thing that a window may have to show.
struct Situation
{
    const char *name;
    std::function<void(Dashboard &)> arrange;
};

/// What a tab may have to show, the widest of it above all. Each situation builds on the one before.
inline std::vector<Situation> situationsOf(int tab)
{
    switch (tab) {
    case 0:
        return {
            {"at rest", [](Dashboard &dashboard) { dashboard.setBridge(40.4, 46.2); }},
            {"warming up",
             [](Dashboard &dashboard) {
                 dashboard.state.isWarmingUp = true;
                 dashboard.state.warmupProgress = 1.0;
                 dashboard.state.currentPulseTemp = 100.4;
             }},
            {"away on battery",
             [](Dashboard &dashboard) {
                 dashboard.state.isWarmingUp = false;
                 dashboard.state.isAcConnected = false;
                 dashboard.state.batteryPercent = 100;
                 dashboard.state.isUserAway = true;
                 dashboard.setBridge(-40.4, 100.2);
             }},
        };
    case 4:
        return {
            {"no stream",
             [](Dashboard &dashboard) {
                 dashboard.machine.interfaces.entries = {{networkInterface("en0", "192.168.1.20")}};
                 dashboard.webServer.refreshIPs();
             }},
            {"a stream", [](Dashboard &dashboard) { dashboard.webServer.isRunning = true; }},
            {"a phone, no permission",
             [](Dashboard &dashboard) {
                 dashboard.machine.interfaces.entries = {
                     {networkInterface("en0", "192.168.100.200"), networkInterface("en5", "172.20.100.200")}};
                 dashboard.machine.captureAccess.granted = false;
                 dashboard.webServer.refreshIPs();
             }},
            {"long names, no network",
             [](Dashboard &dashboard) {
                 dashboard.machine.interfaces.entries->clear();
                 dashboard.machine.hostName.multicast =
                     "an-office-laptop-with-a-rather-long-name-of-its-own-and-then-some";
                 dashboard.webServer.refreshIPs();
                 dashboard.webServer.primaryURL = dashboard.webServer.bonjourURL.value();
             }},
        };
    case 1:
        return {
            {"no report", [](Dashboard &) {}},
            {"a report",
             [](Dashboard &dashboard) { dashboard.state.reportStatus = "Saved to Desktop & Opened in Safari!"; }},
        };
    case 3:
        return {
            {"usual settings", [](Dashboard &) {}},
            {"settings from elsewhere",
             [](Dashboard &dashboard) {
                 dashboard.state.targetTemp = -100.5;
                 dashboard.state.idleTimeoutMinutes = 100000.0;
             }},
        };
    default:
        return {{"as ever", [](Dashboard &) {}}};
    }
}

} // namespace orvalen::test
