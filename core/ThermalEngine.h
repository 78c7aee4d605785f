#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "core/SystemThermalData.h"
#include "platform/PowerSources.h"

namespace orvalen {

class Clock;
class Dispatch;
class GraphicsCopies;
class InputIdleTime;
class Processors;

struct PowerStatus
{
    bool isAcConnected = false;
    int batteryPercent = 100;

    friend bool operator==(const PowerStatus &, const PowerStatus &) = default;
};

/// On the charger if any source says "AC Power"; the level of the last source that has one, 100 % if none has.
[[nodiscard]] PowerStatus powerStatus(const std::vector<PowerSource> &sources);

/// All contact with the machine's sensors, and the one actuator: the heating pulse. From pulse to pulse it keeps
/// nothing but whether a graphics driver is still at work.
class ThermalEngine
{
public:
    /// What the engine needs of a machine. All of it, and the engine itself, must outlive every pulse that it started.
    struct Machine
    {
        TemperatureSensors &temperatureSensors;
        InputIdleTime &inputIdleTime;
        PowerSources &powerSources;
        GraphicsCopies &graphicsCopies;
        Processors &processors;
        Dispatch &dispatch;
        Clock &clock;
    };

    /// The temperature (°C) is the bridge's; progress is a fraction from 0 to 1.
    using ProgressCallback = std::function<void(double currentTemp, double progress)>;
    using CompletionCallback = std::function<void(double finalTemp)>;

    explicit ThermalEngine(const Machine &machine) : machine(machine) {}
    virtual ~ThermalEngine() = default;
    ThermalEngine(const ThermalEngine &) = delete;
    ThermalEngine &operator=(const ThermalEngine &) = delete;

    /// The engine of the installed platform, made on first use and never destroyed.
    [[nodiscard]] static ThermalEngine &shared();

    /// A fresh reading of every sensor. Any trouble: zeros. Any thread.
    [[nodiscard]] virtual SystemThermalData readSensors();

    /// Seconds since the last input of the user; 0 where the session does not tell, so that the user counts as
    /// present. Any thread.
    [[nodiscard]] virtual double getUserIdleSeconds();

    /// Any thread.
    [[nodiscard]] virtual PowerStatus getPowerStatus();

    /// Heats until the bridge reaches `targetTemp` (°C), the power-management unit reaches `targetTemp` + 2, or 15 s
    /// have passed. Returns at once. Both callbacks run on the main thread: progress zero or more times, four times a
    /// second, then completion exactly once, at the latest 20 s after the call even if a sensor never answers.
    /// The engine does not guard against pulses side by side.
    virtual void executeControlledPulse(double targetTemp, ProgressCallback progressCallback,
                                        CompletionCallback completion);

private:
    Machine machine;
    const std::shared_ptr<std::mutex> graphicsAlone = std::make_shared<std::mutex>(); ///< See ControlledPulse::Means.
};

} // namespace orvalen
