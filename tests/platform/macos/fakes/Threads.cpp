#include "tests/platform/macos/fakes/Threads.h"

#include <pthread/qos.h>
#include <sys/sysctl.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <tuple>

#include "tests/platform/macos/fakes/Calls.h"

namespace orvalen::fake {

namespace {

Kernel *kernel = nullptr;
Time *fakeTime = nullptr;

template <typename Fake>
void begin(Fake *&place, Fake *fake)
{
    if (place)
        std::abort(); // one at a time
    place = fake;
    std::ignore = takeCalls();
}

} // namespace

Kernel::Kernel()
{
    begin(kernel, this);
}

Kernel::~Kernel()
{
    kernel = nullptr;
}

Time::Time()
{
    begin(fakeTime, this);
}

Time::~Time()
{
    fakeTime = nullptr;
}

} // namespace orvalen::fake

using namespace orvalen::fake;

int pthread_set_qos_class_self_np(qos_class_t qosClass, int relativePriority)
{
    note("pthread_set_qos_class_self_np %u %d", qosClass, relativePriority);
    return kernel->settingQuality;
}

int sysctlbyname(const char *name, void *oldp, size_t *oldlenp, void *newp, size_t newlen)
{
    note("sysctlbyname %s %zu %s %zu", name, *oldlenp, newp ? "something" : "null", newlen);
    std::memcpy(oldp, &kernel->processors, std::min(*oldlenp, kernel->processorsSize));
    const bool fits = kernel->processorsSize <= *oldlenp;
    *oldlenp = kernel->processorsSize;
    if (!fits)
        errno = ENOMEM;
    return fits ? kernel->askingProcessors : -1;
}

// The linker sends the calls of this program here, those of the system's libraries where they have always gone.
extern "C" {

int __real_clock_gettime(clockid_t clock, timespec *time);
int __real_nanosleep(const timespec *pause, timespec *left);

int __wrap_clock_gettime(clockid_t clock, timespec *time)
{
    if (!fakeTime)
        return __real_clock_gettime(clock, time);
    note("clock_gettime %d", static_cast<int>(clock));
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(fakeTime->now);
    *time = {.tv_sec = seconds.count(), .tv_nsec = (fakeTime->now - seconds).count()};
    return 0;
}

int __wrap_nanosleep(const timespec *pause, timespec *left)
{
    if (!fakeTime)
        return __real_nanosleep(pause, left);
    note("nanosleep %lld %ld %s", static_cast<long long>(pause->tv_sec), pause->tv_nsec, left ? "something" : "null");
    const auto asked = std::chrono::seconds(pause->tv_sec) + std::chrono::nanoseconds(pause->tv_nsec);
    fakeTime->now += std::min<std::chrono::nanoseconds>(asked, fakeTime->longestPause);
    if (asked <= fakeTime->longestPause)
        return 0;
    errno = EINTR;
    return -1;
}
}
