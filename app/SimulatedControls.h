#pragma once

#include "core/Published.h"
#include "core/SystemThermalData.h"

namespace orvalen {

class SimulatedLaptop;

/// A simulated laptop as a window can show and change it: its state as published values. Setting one of the settable
/// values changes the laptop. Main thread only.
class SimulatedControls : public Observable
{
public:
    explicit SimulatedControls(SimulatedLaptop &laptop);

    /// Brings the values up to what the laptop is now; only those that differ are set.
    void refresh();

    /// Everything to the temperature of the room, at once.
    void coolDown();

private:
    SimulatedLaptop &laptop; // before the properties: they are read from it

public:
    Published<SystemThermalData> temperatures; ///< As they truly are, whatever is wrong with the sensors.
    Published<double> secondsAway;             ///< Whole seconds; 0 while somebody is there.

    // Settable.
    Published<double> roomCelsius;
    Published<bool> isChargerPluggedIn;
    Published<double> batteryPercent; ///< A whole number.
    Published<bool> isUserAway;
    Published<bool> allSensorsGone;
    Published<bool> oneSensorStuck;
    Published<bool> oneSensorNotANumber;

private:
    void setFaults();
};

} // namespace orvalen
