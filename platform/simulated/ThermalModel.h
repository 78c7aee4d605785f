#pragma once

#include <array>
#include <chrono>
#include <cstddef>

namespace orvalen {

/// A part of the laptop that has one temperature.
enum class Body
{
    processor,     ///< The cores' corner of the die.
    graphics,      ///< The graphics processor's corner of the die.
    regulators,    ///< Power management and the regulators of the memory.
    board,         ///< Logic board with its heat spreader.
    displayBridge, ///< Where the display's flat cable meets the board.
    storage,       ///< Flash and the radio beside it.
    ports,         ///< Charging electronics and connectors.
    battery,
    shell, ///< The case where it is far from everything warm.
};
inline constexpr std::size_t bodyCount = 9;

/// What the laptop is doing: where its heat comes from.
struct ThermalLoad
{
    bool switchedOn = true;          ///< Display and light use; off, nothing of it is left.
    double busyShare = 0.0;          ///< Of the processor cores, from 0 (none) to 1 (all).
    double copyBytesPerSecond = 0.0; ///< By the graphics processor.
    double chargingWatts = 0.0;      ///< Into the battery.
};

/// A laptop as a network of heat capacities and conductances, in a room.
///
/// Every body stores heat (J/K), passes it on to its neighbours and leaks it into the room (W/K); every load turns into
/// watts in certain bodies. The network is linear and, for a load that stays as it is, solved exactly: a step has any
/// length, from microseconds to a month of sleep, and many short ones end where one long one does. Not thread-safe.
class ThermalModel
{
public:
    /// Everything at the temperature of the room (°C).
    explicit ThermalModel(double roomCelsius);

    /// Lets `duration` pass under one load, in a room of that temperature (°C). Nothing happens in less than no time.
    void step(std::chrono::duration<double> duration, const ThermalLoad &load, double roomCelsius);

    /// Puts every body at one temperature.
    void setAll(double celsius);

    [[nodiscard]] double celsius(Body body) const { return temperatures[static_cast<std::size_t>(body)]; }

    /// Heat in all bodies together, in joules; 0 with everything at 0 °C.
    [[nodiscard]] double storedJoules() const;

    /// Heat that leaves for the room now.
    [[nodiscard]] double leakWatts(double roomCelsius) const;

    /// Heat that a load makes.
    [[nodiscard]] static double inputWatts(const ThermalLoad &load);

private:
    std::array<double, bodyCount> temperatures{}; // °C
};

} // namespace orvalen
