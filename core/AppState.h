#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "core/Published.h"
#include "core/SystemThermalData.h"

namespace orvalen {

class Dispatch;
class Notifications;
class RepeatingTask;
class SettingsStore;
class Sounds;
class ThermalEngine;

/// What the program knows and what the user has chosen: the model behind every view. Main thread only.
class AppState : public Observable
{
public:
    /// What the state needs. Everything must outlive it.
    struct Services
    {
        ThermalEngine &engine;
        SettingsStore &settings;
        Dispatch &dispatch;
        Sounds &sounds;
        Notifications &notifications;
    };

    /// Loads the settings, takes a first reading and starts the monitoring.
    explicit AppState(const Services &services);
    virtual ~AppState();

    /// The state of the installed platform, made on first use and never destroyed.
    [[nodiscard]] static AppState &shared();

private:
    Services services; // before the properties: the settings are read from it

public:
    Published<SystemThermalData> thermalData{*this, {}};
    Published<bool> isAcConnected{*this, true}; // so that the first reading can never look like a plug-in
    Published<int> batteryPercent{*this, 100};
    Published<double> userIdleSeconds{*this, 0.0};
    Published<bool> isUserAway{*this, false};
    Published<bool> isWarmingUp{*this, false};
    Published<double> warmupProgress{*this, 0.0};   ///< 0 to 1.
    Published<double> currentPulseTemp{*this, 0.0}; ///< °C.
    Published<int> selectedTab{*this, 0};
    Published<std::optional<std::string>> reportStatus{*this, std::nullopt};

    // The user's settings: each is on disk before its stream tells anybody.
    Published<bool> smartModeEnabled;
    Published<double> targetTemp;         ///< °C.
    Published<double> idleTimeoutMinutes; ///< Minutes.
    Published<bool> autoWarmupOnCharger;
    Published<bool> soundFeedbackEnabled;

    /// Reads sensors, power and idle time, and starts a warm-up if the charger has just been plugged into a cold
    /// machine.
    virtual void refreshTelemetry();

protected:
    virtual void startMonitoringLoop();
    virtual void evaluateLifecycle();

public:
    /// Plays a named sound, if the user wants sounds. Returns at once.
    virtual void playChime(std::string_view name);

    /// Heats the display, to `targetTemp` if no target (°C) is given. Dropped while a warm-up runs. `silent`: without
    /// chimes and notification.
    virtual void triggerWarmup(std::optional<double> target = std::nullopt, bool silent = false);

private:
    Published<bool> boolSetting(const char *key);
    Published<double> doubleSetting(const char *key, double standard);
    void finishWarmup(double finalTemp, bool silent);
    void sendNotification(const std::string &message);

    bool previousAcConnected = true; // the charger as construction found it
    std::unique_ptr<RepeatingTask> timer;
    bool isPulseUnderWay = false; // as isWarmingUp, but known before that is announced
    std::shared_ptr<AppState *> self = std::make_shared<AppState *>(this); // callbacks hold it weakly
};

} // namespace orvalen
