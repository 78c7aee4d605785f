#pragma once

#include <span>
#include <string_view>

#include "platform/simulated/ThermalModel.h"

namespace orvalen {

/// One of the laptop's temperature sensors: where it sits, and how it differs from an ideal one there.
struct SimulatedSensor
{
    enum class Kind
    {
        near,         ///< Reads the bodies that it lies between.
        graphicsCore, ///< The same, and never less than its parked value: the core is asleep while it is cool.
        constant,     ///< Reads one value whatever happens.
    };
    struct Share
    {
        Body body = Body::shell;
        double share = 0.0;
    };

    std::string_view product;
    Kind kind = Kind::near;
    Share nearest{};
    Share next{};
    double value = 0.0; ///< °C: a constant sensor's reading; any other's calibration error.

    /// What is left of 1 is the shell's share: a sensor never reads outside the temperatures around it.
    [[nodiscard]] double celsius(const ThermalModel &model) const;
};

/// All 57, under the product names and in about the order in which the machine has them. Several may share a name.
[[nodiscard]] std::span<const SimulatedSensor> simulatedSensors();

} // namespace orvalen
