#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvalen {

/// A temperature sensor as the kernel presents it.
struct SensorSource
{
    enum class Kind
    {
        hwmonChip,
        thermalZone,
        battery, ///< A power supply of type Battery, one of the machine's own.
    };

    Kind kind = Kind::hwmonChip;
    std::string chip;              ///< The chip's `name`, the zone's `type` or the power supply's own name.
    std::string label;             ///< Of hwmon sensors that have one.
    bool isOnRotatingDisk = false; ///< Asking it can keep the disk from resting.

    friend bool operator==(const SensorSource &, const SensorSource &) = default;
};

/// The product name for each of a machine's sensors, std::nullopt for one that shall not be read.
///
/// Linux has no product names like "PMU tdie1", by which sensors are sorted into groups. So every sensor gets the word
/// of the group that it stands for, then its own words. A group's word is chosen by where the sensor sits: what follows
/// the board or the skin stands for the display's bridge, what follows a die never does. A sensor of unknown place is
/// left out, and so is one that only repeats another one.
[[nodiscard]] std::vector<std::optional<std::string>> productNames(const std::vector<SensorSource> &sources);

} // namespace orvalen
