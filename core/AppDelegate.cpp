#include "core/AppDelegate.h"

#include <optional>
#include <string>

#include "core/AppState.h"
#include "core/Decimals.h"
#include "platform/Application.h"
#include "platform/Dispatch.h"
#include "platform/StatusBar.h"
#include "streaming/WebScreenServer.h"
#include "system/HotKeyManager.h"

namespace orvalen {

namespace {

constexpr auto accessibilityDescription = "Orvalen";

constexpr std::string_view symbol(bool isWarmingUp)
{
    return isWarmingUp ? "flame.fill" : "shield.lefthalf.filled";
}

std::string title(double celsius)
{
    return ' ' + noDecimals(celsius) + "°";
}

} // namespace

AppDelegate::AppDelegate(const Services &services) : services(services) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    services.application.setActivationPolicy(Application::ActivationPolicy::regular);
    services.application.activate(true);
    services.hotKeys.setupGlobalHotKey();

    statusItem = services.statusBar.statusItemWithLength(StatusBar::variableLength);
    if (auto *const button = statusItem->button()) {
        button->setImage(symbol(false), accessibilityDescription);
        button->setImagePosition(StatusItemButton::ImagePosition::left);
        button->setTitle(" 39°"); // until the first reading is delivered
        button->setAction([weak = std::weak_ptr(self)] {
            if (const auto alive = weak.lock())
                (*alive)->menuBarClicked();
        });
    }

    // Delivered after whatever task changed the value, the current value too; no time passes in between.
    cancellables.push_back(services.state.thermalData.subscribe([this](const SystemThermalData &data) {
        services.dispatch.onMain([weak = std::weak_ptr(self), bridgeTemp = data.bridgeTemp] {
            if (const auto alive = weak.lock())
                (*alive)->showTemperature(bridgeTemp);
        });
    }));
    cancellables.push_back(services.state.isWarmingUp.subscribe([this](bool isWarmingUp) {
        services.dispatch.onMain([weak = std::weak_ptr(self), isWarmingUp] {
            if (const auto alive = weak.lock())
                (*alive)->showSymbol(isWarmingUp);
        });
    }));
}

void AppDelegate::showTemperature(double bridgeTemp)
{
    if (auto *const button = statusItem->button())
        button->setTitle(title(bridgeTemp));
}

void AppDelegate::showSymbol(bool isWarmingUp)
{
    if (auto *const button = statusItem->button())
        button->setImage(symbol(isWarmingUp), accessibilityDescription);
}

void AppDelegate::menuBarClicked()
{
    services.application.activate(true);
    for (const auto &window : services.application.windows())
        if (window->canBecomeKeyWindow())
            window->makeKeyAndOrderFront();
}

void AppDelegate::performAction(std::string_view name)
{
    if (name == "warm-up")
        services.state.triggerWarmup(std::nullopt, false);
    else if (name == "blind-cast")
        services.webServer.triggerBlindCast();
}

} // namespace orvalen
