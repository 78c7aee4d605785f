#pragma once

#include <vector>

#include "platform/TemperatureSensors.h"

namespace orvalen {

/// One snapshot of the machine's temperatures, all in degrees Celsius. 0.0 means that there was no reading.
struct SystemThermalData
{
    double bridgeTemp = 0.0;  ///< The display bridge: what every decision is made on.
    double pmuTemp = 0.0;     ///< Mean of the power-management-unit sensors.
    double socTemp = 0.0;     ///< Mean of the system-on-chip sensors.
    double socMax = 0.0;      ///< Hottest of the system-on-chip sensors.
    double batteryTemp = 0.0; ///< Mean of the battery sensors.
    double nandTemp = 0.0;    ///< Mean of the flash-storage sensors.

    SystemThermalData() = default;
    SystemThermalData(double bridgeTemp, double pmuTemp, double socTemp, double socMax, double batteryTemp,
                      double nandTemp)
        : bridgeTemp(bridgeTemp),
          pmuTemp(pmuTemp),
          socTemp(socTemp),
          socMax(socMax),
          batteryTemp(batteryTemp),
          nandTemp(nandTemp)
    {
    }

    /// The display may go blank at this temperature.
    [[nodiscard]] bool isBlankRisk() const { return bridgeTemp < 34.0; }

    /// A hot chip alone declares the display ready, even when the bridge reading lags.
    [[nodiscard]] bool isReady() const { return bridgeTemp >= 37.0 || socMax >= 40.0; }

    friend bool operator==(const SystemThermalData &, const SystemThermalData &) = default;
};

/// Sorts readings into groups by product name and takes their means. Only readings strictly between 0 and 125 °C count;
/// a group without readings is 0.0, and a machine without bridge sensors has the larger of `pmuTemp` and `socTemp` as
/// its bridge.
[[nodiscard]] SystemThermalData summarised(const std::vector<TemperatureReading> &readings);

} // namespace orvalen
