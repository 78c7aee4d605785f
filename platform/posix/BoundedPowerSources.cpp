#include "platform/posix/BoundedPowerSources.h"

#include <utility>

namespace orvalen {

BoundedPowerSources::BoundedPowerSources(std::shared_ptr<PowerSources> inner, std::chrono::nanoseconds limit,
                                         PrepareAskingThread prepareThread)
    : latest(std::make_shared<Latest>()),
      question(
          [inner = std::move(inner), latest = latest] {
              auto sources = inner->list();
              const std::scoped_lock lock(latest->mutex);
              return latest->sources = std::move(sources);
          },
          limit, std::move(prepareThread))
{
}

std::vector<PowerSource> BoundedPowerSources::list()
{
    if (auto sources = question.ask())
        return *std::move(sources);
    const std::scoped_lock lock(latest->mutex);
    return latest->sources;
}

} // namespace orvalen
