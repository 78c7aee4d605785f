#include "core/AppState.h"

#include <chrono>
#include <cmath>
#include <utility>

#include "core/Decimals.h"
#include "core/Lifecycle.h"
#include "core/ThermalEngine.h"
#include "platform/Platform.h"

namespace orvalen {

namespace {

constexpr std::chrono::seconds monitoringPeriod{3};

std::string displayReady(double celsius)
{
    return "Display Ready! Temperature: " + oneDecimal(celsius) + "°C";
}

} // namespace

AppState &AppState::shared()
{
    static auto &state = []() -> AppState & {
        auto &platform = Platform::installed();
        return *new AppState({ThermalEngine::shared(), *platform.settings, *platform.dispatch, *platform.sounds,
                              *platform.notifications});
    }();
    return state;
}

AppState::AppState(const Services &given)
    : services(given),
      smartModeEnabled(boolSetting("smartModeEnabled")),
      targetTemp(doubleSetting("targetTemp", 40.0)),
      idleTimeoutMinutes(doubleSetting("idleTimeoutMinutes", 3.0)),
      autoWarmupOnCharger(boolSetting("autoWarmupOnCharger")),
      soundFeedbackEnabled(boolSetting("soundFeedbackEnabled"))
{
    previousAcConnected = services.engine.getPowerStatus().isAcConnected;
    AppState::refreshTelemetry();
    AppState::startMonitoringLoop();
}

AppState::~AppState() = default;

// On unless switched off.
Published<bool> AppState::boolSetting(const char *key)
{
    auto &store = services.settings;
    return {*this, !store.has(key) || store.readBool(key), [&store, key](bool value) { store.writeBool(key, value); }};
}

// A stored 0 cannot be told from a value never set; what is no finite number was not set by us.
Published<double> AppState::doubleSetting(const char *key, double standard)
{
    auto &store = services.settings;
    const double stored = store.readDouble(key);
    return {*this, std::isfinite(stored) && stored != 0.0 ? stored : standard,
            [&store, key](double value) { store.writeDouble(key, value); }};
}

void AppState::startMonitoringLoop()
{
    timer = services.dispatch.repeatOnMain(monitoringPeriod, [weak = std::weak_ptr(self)] {
        if (const auto alive = weak.lock())
            (*alive)->evaluateLifecycle();
    });
}

void AppState::refreshTelemetry()
{
    thermalData = services.engine.readSensors();
    const auto power = services.engine.getPowerStatus();
    const bool wasAcConnected = isAcConnected;
    isAcConnected = power.isAcConnected;
    batteryPercent = power.batteryPercent;
    userIdleSeconds = services.engine.getUserIdleSeconds();

    if (autoWarmupOnCharger && isColdPlugIn(wasAcConnected, power.isAcConnected, thermalData.value().bridgeTemp)) {
        playChime("Blow"); // heard even where a running warm-up refuses the request; else it sounds twice, on purpose
        triggerWarmup(targetTemp.value(), false);
    }
}

void AppState::evaluateLifecycle()
{
    refreshTelemetry();
    if (!smartModeEnabled || isWarmingUp)
        return;

    const auto decision = decide({.bridgeTemp = thermalData.value().bridgeTemp,
                                  .isAcConnected = isAcConnected,
                                  .batteryPercent = batteryPercent,
                                  .userIdleSeconds = userIdleSeconds,
                                  .isUserAway = isUserAway,
                                  .targetTemp = targetTemp,
                                  .idleTimeoutMinutes = idleTimeoutMinutes});
    if (decision.isUserAway != isUserAway)
        isUserAway = decision.isUserAway;
    if (decision.warmup)
        triggerWarmup(decision.warmup->target, decision.warmup->silent);
}

void AppState::playChime(std::string_view name)
{
    if (!soundFeedbackEnabled)
        return;
    try {
        services.dispatch.concurrently(QualityOfService::userInitiated,
                                       [&sounds = services.sounds, name = std::string(name)] { sounds.play(name); });
    } catch (...) { // no thread for a sound: no sound
    }
}

void AppState::triggerWarmup(std::optional<double> target, bool silent)
{
    if (isWarmingUp || isPulseUnderWay)
        return;
    isPulseUnderWay = true; // first: whoever hears the announcement may ask for heat, too
    isWarmingUp = true;
    warmupProgress = 0.0;
    currentPulseTemp = thermalData.value().bridgeTemp;
    if (!silent)
        playChime("Blow");

    try {
        services.engine.executeControlledPulse(
            target.value_or(targetTemp),
            [weak = std::weak_ptr(self)](double currentTemp, double progress) {
                if (const auto alive = weak.lock()) {
                    (*alive)->currentPulseTemp = currentTemp;
                    (*alive)->warmupProgress = progress;
                }
            },
            [weak = std::weak_ptr(self), silent](double finalTemp) {
                if (const auto alive = weak.lock())
                    (*alive)->finishWarmup(finalTemp, silent);
            });
    } catch (...) { // not even started, for want of memory: the next request shall find the way free
        isPulseUnderWay = false;
        isWarmingUp = false;
    }
}

void AppState::finishWarmup(double finalTemp, bool silent)
{
    isPulseUnderWay = false;
    isWarmingUp = false; // first: a plug-in that the refresh finds may start the next warm-up at once
    warmupProgress = 1.0;
    refreshTelemetry();
    if (silent)
        return;
    playChime("Glass");
    sendNotification(displayReady(finalTemp));
}

void AppState::sendNotification(const std::string &message)
{
    services.notifications.post("Orvalen", message);
}

} // namespace orvalen
