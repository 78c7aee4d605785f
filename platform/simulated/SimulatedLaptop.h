#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/PowerSources.h"
#include "platform/TemperatureSensors.h"
#include "platform/simulated/ThermalModel.h"

namespace orvalen {

class Clock;
class Processors;

/// What can be wrong with a simulated laptop's sensors. Two different display-bridge sensors take the single faults.
struct SensorFaults
{
    bool allGone = false;
    bool oneStuck = false;      ///< Stays at what it read when the fault began.
    bool oneNotANumber = false; ///< Reads NaN.
};

/// A laptop that is not there, for a process that really works: its processor gets warm from the processor time that
/// this process uses, its graphics processor from the bytes that the process has it copy.
///
/// Time passes when somebody looks: every operation first brings the laptop up to the clock. Any thread.
class SimulatedLaptop
{
public:
    struct Means
    {
        Clock &clock;
        Processors &processors;
        std::function<std::chrono::nanoseconds()> processorTimeUsed; ///< Ever more of it. Any thread.
    };

    /// Switched on this moment and on its charger, with everything as cold as the room and its user before it.
    explicit SimulatedLaptop(Means means, double roomCelsius = 20.0);

    // What the machine's services see.
    [[nodiscard]] std::vector<TemperatureReading> sensorReadings(); ///< With the faults.
    [[nodiscard]] PowerSource powerSource();
    [[nodiscard]] std::chrono::duration<double> sinceLastInput();
    void countCopy(std::size_t bytes);

    // What only a simulated machine tells, and lets be changed.
    [[nodiscard]] std::chrono::nanoseconds now() const;           ///< By its clock.
    [[nodiscard]] std::vector<TemperatureReading> trueReadings(); ///< Without the faults.
    [[nodiscard]] double roomCelsius();
    void setRoomCelsius(double celsius);
    [[nodiscard]] bool isChargerPluggedIn();
    void setChargerPluggedIn(bool pluggedIn);
    [[nodiscard]] double batteryPercent();
    void setBatteryPercent(double percent); ///< From 0 to 100. The laptop stays on at 0.
    [[nodiscard]] bool isUserAway();
    void setUserAway(bool away); ///< Away: nobody touches it from now on.
    [[nodiscard]] SensorFaults faults();
    void setFaults(const SensorFaults &faults);
    void coolDown(); ///< Everything to the temperature of the room, at once.

private:
    void advance();
    void pass(std::chrono::duration<double> duration, ThermalLoad load);
    [[nodiscard]] double chargingWatts() const;
    [[nodiscard]] std::vector<TemperatureReading> readings() const;

    const Means means;
    std::mutex lock; // for everything below
    ThermalModel model;
    double room;
    bool pluggedIn = true;
    double charge = 80.0;                              // %
    std::optional<std::chrono::nanoseconds> awaySince; // by the clock
    SensorFaults present;
    double stuckCelsius = 0.0;
    std::chrono::nanoseconds upTo; // by the clock
    std::chrono::nanoseconds processorTimeAtLastAdvance;
    std::size_t bytesSinceLastAdvance = 0;
};

} // namespace orvalen
