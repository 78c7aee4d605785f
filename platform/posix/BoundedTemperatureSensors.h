#pragma once

#include <chrono>
#include <memory>

#include "platform/TemperatureSensors.h"

namespace orvalen {

/// Sensors that answer within a bounded time whatever happens inside: the others are asked on a thread of their own,
/// and what does not come in time is std::nullopt. While such a late read is still under way nobody waits for it and
/// nothing new is asked; when it returns, all is as before. An exception from inside counts as std::nullopt.
///
/// An answer is never older than the question: it comes from a read that began after it.
class BoundedTemperatureSensors : public TemperatureSensors
{
public:
    explicit BoundedTemperatureSensors(std::unique_ptr<TemperatureSensors> inner,
                                       std::chrono::nanoseconds limit = std::chrono::milliseconds(500));

    /// Does not wait for a late read either: `inner` lives until that returns.
    ~BoundedTemperatureSensors() override;

    BoundedTemperatureSensors(const BoundedTemperatureSensors &) = delete;
    BoundedTemperatureSensors &operator=(const BoundedTemperatureSensors &) = delete;

    [[nodiscard]] std::optional<std::vector<TemperatureReading>> read() override;

private:
    struct Worker;
    const std::chrono::nanoseconds limit;
    const std::shared_ptr<Worker> worker; ///< Shared with its thread.
};

} // namespace orvalen
