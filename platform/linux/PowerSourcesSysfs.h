#pragma once

#include <string>

#include "platform/PowerSources.h"

namespace orvalen {

/// The batteries that the kernel shows as files, in the order of their names. Each of them is on "AC Power" while any
/// adapter is plugged in, and on "Battery Power" otherwise.
class PowerSourcesSysfs : public PowerSources
{
public:
    /// `root` stands for /sys.
    explicit PowerSourcesSysfs(std::string root = "/sys");

    [[nodiscard]] std::vector<PowerSource> list() override;

private:
    const std::string root;
};

} // namespace orvalen
