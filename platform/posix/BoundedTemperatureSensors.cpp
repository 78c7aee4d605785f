#include "platform/posix/BoundedTemperatureSensors.h"

#include <utility>

namespace orvalen {

BoundedTemperatureSensors::BoundedTemperatureSensors(std::shared_ptr<TemperatureSensors> inner,
                                                     std::chrono::nanoseconds limit, PrepareAskingThread prepareThread)
    : question([inner = std::move(inner)] { return inner->read(); }, limit, std::move(prepareThread))
{
}

std::optional<std::vector<TemperatureReading>> BoundedTemperatureSensors::read()
{
    return question.ask().value_or(std::nullopt);
}

} // namespace orvalen
