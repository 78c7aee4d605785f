#include "platform/posix/BoundedTemperatureSensors.h"

namespace orvalen {

BoundedTemperatureSensors::BoundedTemperatureSensors(std::shared_ptr<TemperatureSensors> inner,
                                                     std::chrono::nanoseconds limit)
    : question([inner = std::move(inner)] { return inner->read(); }, limit)
{
}

std::optional<std::vector<TemperatureReading>> BoundedTemperatureSensors::read()
{
    return question.ask().value_or(std::nullopt);
}

} // namespace orvalen
