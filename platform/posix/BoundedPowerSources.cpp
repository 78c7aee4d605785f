#include "platform/posix/BoundedPowerSources.h"

namespace orvalen {

BoundedPowerSources::BoundedPowerSources(std::shared_ptr<PowerSources> inner, std::chrono::nanoseconds limit)
    : question([inner = std::move(inner)] { return inner->list(); }, limit)
{
}

std::vector<PowerSource> BoundedPowerSources::list()
{
    return question.ask().value_or(std::vector<PowerSource>{});
}

} // namespace orvalen
