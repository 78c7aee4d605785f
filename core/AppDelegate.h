#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "core/Published.h"

namespace orvalen {

class AppState;
class Application;
class Dispatch;
class HotKeyManager;
class StatusBar;
class StatusItem;
class WebScreenServer;

/// What the program does when it has started, beside showing its window: it comes to the front, takes its hot keys and
/// puts the temperature into the system's bar. Main thread only.
class AppDelegate
{
public:
    /// What it needs. Everything must outlive it.
    struct Services
    {
        Application &application;
        HotKeyManager &hotKeys;
        StatusBar &statusBar;
        AppState &state;
        WebScreenServer &webServer;
        Dispatch &dispatch;
    };

    explicit AppDelegate(const Services &services);
    ~AppDelegate();

    AppDelegate(const AppDelegate &) = delete;
    AppDelegate &operator=(const AppDelegate &) = delete;

    /// Once, when the program has started.
    void applicationDidFinishLaunching();

    /// The status item's action: all our windows to the front. One that was closed stays closed.
    void menuBarClicked();

    /// What a desktop offers beside the hot keys: "warm-up" and "blind-cast". Other names do nothing.
    void performAction(std::string_view name);

private:
    void showTemperature(double bridgeTemp);
    void showSymbol(bool isWarmingUp);

    Services services;
    std::unique_ptr<StatusItem> statusItem;
    std::vector<Subscription> cancellables;
    std::shared_ptr<AppDelegate *> self = std::make_shared<AppDelegate *>(this); // deliveries hold it weakly
};

} // namespace orvalen
