#include "platform/macos/ClockContinuous.h"

#include <ctime>

namespace orvalen {

using std::chrono::nanoseconds;

nanoseconds ClockContinuous::now() const
{
    std::timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC_RAW, &time);
    return std::chrono::seconds(time.tv_sec) + nanoseconds(time.tv_nsec);
}

void ClockContinuous::sleepFor(nanoseconds duration)
{
    const auto start = now();
    // A pause may end early, as for a signal; what counts is this clock.
    for (auto left = duration; left > nanoseconds::zero(); left = duration - (now() - start)) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
        const std::timespec pause{.tv_sec = seconds.count(), .tv_nsec = (left - seconds).count()};
        ::nanosleep(&pause, nullptr);
    }
}

} // namespace orvalen
