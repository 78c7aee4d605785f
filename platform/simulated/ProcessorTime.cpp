#include "platform/simulated/ProcessorTime.h"

#include <sys/resource.h>

namespace orvalen {

std::chrono::nanoseconds processorTimeUsed()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto duration = [](const timeval &time) {
        return std::chrono::seconds(time.tv_sec) + std::chrono::microseconds(time.tv_usec);
    };
    return duration(usage.ru_utime) + duration(usage.ru_stime);
}

} // namespace orvalen
