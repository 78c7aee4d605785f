#include "platform/linux/ClockBoottime.h"

#include <cerrno>
#include <ctime>

namespace orvalen {

std::chrono::nanoseconds ClockBoottime::now() const
{
    std::timespec time{};
    ::clock_gettime(CLOCK_BOOTTIME, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void ClockBoottime::sleepFor(std::chrono::nanoseconds duration)
{
    if (duration <= std::chrono::nanoseconds::zero())
        return;
    // An instant rather than a rest to sleep, so that a signal handler that ran meanwhile does not prolong it.
    const auto start = now();
    const auto until =
        duration < std::chrono::nanoseconds::max() - start ? start + duration : std::chrono::nanoseconds::max();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(until);
    const std::timespec instant{.tv_sec = seconds.count(), .tv_nsec = (until - seconds).count()};
    while (::clock_nanosleep(CLOCK_BOOTTIME, TIMER_ABSTIME, &instant, nullptr) == EINTR) {
    }
}

} // namespace orvalen
