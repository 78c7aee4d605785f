#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <string>

#include "platform/TemperatureSensors.h"

namespace orvalen {

/// The sensors that the kernel shows as files: hwmon chips, thermal zones and batteries, in the order of chip name and
/// index, under the product names of SensorProductNames.h.
///
/// The values are read afresh each time. What files there are is remembered, and looked up anew after a while, after a
/// remembered file has vanished, and as long as nothing has been found. A file may take its time to answer, or never
/// do so: BoundedTemperatureSensors bounds the wait.
class TemperatureSensorsSysfs : public TemperatureSensors
{
public:
    /// `root` stands for /sys. With `listingAge` zero nothing is remembered.
    explicit TemperatureSensorsSysfs(std::string root = "/sys",
                                     std::chrono::nanoseconds listingAge = std::chrono::seconds(30));

    [[nodiscard]] std::optional<std::vector<TemperatureReading>> read() override;

private:
    struct Sensor;
    struct Listing;
    [[nodiscard]] std::shared_ptr<Listing> currentListing();

    const std::string root;
    const std::chrono::nanoseconds listingAge;
    std::mutex mutex; ///< Guards `listing`. Never held while a file is asked.
    std::shared_ptr<Listing> listing;
};

} // namespace orvalen
