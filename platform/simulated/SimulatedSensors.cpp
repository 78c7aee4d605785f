#include "platform/simulated/SimulatedSensors.h"

#include <algorithm>
#include <array>

namespace orvalen {

namespace {

using enum Body;
using Kind = SimulatedSensor::Kind;
using Share = SimulatedSensor::Share;

constexpr double parkedCelsius = 30.0;      // what a sensor of a sleeping core says
constexpr double calibrationCelsius = 51.9; // the same on every machine
constexpr double notFittedCelsius = -21.7;  // a measuring input with nothing on it

constexpr SimulatedSensor near(std::string_view product, Share nearest, Share next, double calibrationError)
{
    return {product, Kind::near, nearest, next, calibrationError};
}

constexpr SimulatedSensor graphicsCore(std::string_view product, Share nearest, Share next, double calibrationError)
{
    return {product, Kind::graphicsCore, nearest, next, calibrationError};
}

constexpr SimulatedSensor parked(std::string_view product)
{
    return {product, Kind::constant, {}, {}, parkedCelsius};
}

constexpr SimulatedSensor calibration(std::string_view product)
{
    return {product, Kind::constant, {}, {}, calibrationCelsius};
}

constexpr SimulatedSensor notFitted(std::string_view product)
{
    return {product, Kind::constant, {}, {}, notFittedCelsius};
}

// Shares and errors are fitted to readings of such a machine at rest and under each kind of load.
constexpr std::array sensors = {
    near("PMU tdie1", {regulators, 0.77}, {displayBridge, 0.16}, 1.2),
    near("PMU tdie2", {regulators, 1.00}, {}, -1.2),
    near("PMU tdie4", {regulators, 0.79}, {displayBridge, 0.10}, 1.2),
    near("PMU tdie5", {regulators, 0.94}, {}, 0.4),
    near("PMU tdie6", {regulators, 0.81}, {graphics, 0.11}, 1.2),
    near("PMU tdie7", {regulators, 1.00}, {}, -1.0),
    near("PMU tdie8", {regulators, 0.85}, {graphics, 0.14}, -0.6),
    near("PMU TP3w", {regulators, 0.94}, {}, 0.7),
    calibration("PMU tcal"),
    notFitted("PMU tdev1"),
    notFitted("PMU tdev2"),
    near("PMU tdev3", {storage, 0.55}, {ports, 0.37}, 1.2),
    near("PMU tdev4", {storage, 0.57}, {ports, 0.28}, 0.9),
    near("PMU tdev5", {regulators, 0.51}, {board, 0.44}, 0.1),
    notFitted("PMU tdev6"),
    near("PMU tdev7", {ports, 0.88}, {board, 0.04}, -0.2),
    near("PMU tdev8", {battery, 0.64}, {regulators, 0.36}, 0.5),
    near("PMU2 tdie1", {displayBridge, 0.92}, {}, 0.5),
    near("PMU2 tdie2", {displayBridge, 0.89}, {board, 0.06}, 0.0),
    near("PMU2 tdie3", {displayBridge, 0.56}, {regulators, 0.34}, 1.2),
    near("PMU2 tdie4", {regulators, 0.46}, {displayBridge, 0.44}, 1.2),
    near("PMU2 tdie5", {displayBridge, 0.45}, {regulators, 0.43}, 1.2),
    near("PMU2 tdie6", {displayBridge, 0.59}, {regulators, 0.30}, 1.2),
    near("PMU2 tdie7", {displayBridge, 0.94}, {}, -0.4),
    near("PMU2 tdie8", {displayBridge, 0.52}, {regulators, 0.37}, 1.1),
    calibration("PMU2 tcal"),
    notFitted("PMU2 tdev1"),
    near("PMU2 tdev2", {storage, 0.92}, {board, 0.08}, -0.4),
    notFitted("PMU2 tdev3"),
    near("PMU2 tdev4", {regulators, 0.77}, {graphics, 0.05}, 0.4),
    near("PMU2 tdev5", {ports, 0.52}, {battery, 0.48}, 1.1),
    near("SOC MTR Temp Sensor0", {processor, 0.56}, {graphics, 0.18}, -0.9),
    near("SOC MTR Temp Sensor1", {processor, 0.53}, {graphics, 0.39}, 1.2),
    near("SOC MTR Temp Sensor2", {processor, 0.76}, {graphics, 0.21}, -1.2),
    near("PMGR SOC Die Temp Sensor0", {board, 0.87}, {processor, 0.13}, 0.0),
    near("PMGR SOC Die Temp Sensor1", {processor, 0.50}, {graphics, 0.35}, 1.2),
    near("PMGR SOC Die Temp Sensor2", {processor, 0.71}, {graphics, 0.19}, 0.7),
    near("pACC MTR Temp Sensor2", {processor, 0.87}, {graphics, 0.04}, -1.2),
    near("pACC MTR Temp Sensor3", {processor, 0.89}, {graphics, 0.07}, -1.2),
    near("pACC MTR Temp Sensor4", {processor, 0.92}, {graphics, 0.08}, -1.1),
    near("pACC MTR Temp Sensor5", {processor, 0.89}, {graphics, 0.11}, 1.1),
    near("pACC MTR Temp Sensor7", {processor, 0.86}, {graphics, 0.14}, -0.2),
    near("pACC MTR Temp Sensor8", {processor, 0.84}, {graphics, 0.16}, -1.1),
    near("pACC MTR Temp Sensor9", {processor, 0.91}, {graphics, 0.09}, -1.2),
    near("eACC MTR Temp Sensor0", {processor, 0.62}, {graphics, 0.20}, -1.2),
    near("eACC MTR Temp Sensor3", {processor, 0.62}, {graphics, 0.20}, -1.1),
    graphicsCore("GPU MTR Temp Sensor1", {graphics, 0.57}, {}, -1.6),
    graphicsCore("GPU MTR Temp Sensor4", {graphics, 0.62}, {}, -1.7),
    parked("ANE MTR Temp Sensor1"),
    parked("ISP MTR Temp Sensor5"),
    near("NAND CH0 temp", {storage, 1.00}, {}, -0.8),
    near("gas gauge battery", {battery, 1.00}, {}, 0.1),
    near("gas gauge battery", {battery, 1.00}, {}, 0.1),
    near("gas gauge battery", {battery, 1.00}, {}, 0.1),
    near("gas gauge battery", {battery, 1.00}, {}, 0.1),
    near("gas gauge battery", {battery, 1.00}, {}, 0.1),
    near("gas gauge battery", {battery, 1.00}, {}, 0.1),
};
static_assert(sensors.size() == 57);

} // namespace

double SimulatedSensor::celsius(const ThermalModel &model) const
{
    if (kind == Kind::constant)
        return value;
    const double surroundings = (1.0 - nearest.share - next.share) * model.celsius(shell);
    const double reading =
        nearest.share * model.celsius(nearest.body) + next.share * model.celsius(next.body) + surroundings + value;
    return kind == Kind::graphicsCore ? std::max(reading, parkedCelsius) : reading;
}

std::span<const SimulatedSensor> simulatedSensors()
{
    return sensors;
}

} // namespace orvalen
