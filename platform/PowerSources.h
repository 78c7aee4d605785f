#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace orvalen {

/// One power source of the machine, as it describes itself.
struct PowerSource
{
    std::optional<std::string> state;            ///< "Power Source State": "AC Power", "Battery Power" or "Off Line".
    std::optional<std::int64_t> currentCapacity; ///< "Current Capacity", in per cent.
};

/// The machine's batteries and chargers. Any thread, also several at once.
class PowerSources
{
public:
    virtual ~PowerSources() = default;

    /// The sources in the machine's own order; empty where there are none or no such service.
    [[nodiscard]] virtual std::vector<PowerSource> list() = 0;
};

} // namespace orvalen
