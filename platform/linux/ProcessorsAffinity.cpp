#include "platform/linux/ProcessorsAffinity.h"

#include <algorithm>
#include <cerrno>
#include <sched.h>
#include <thread>
#include <vector>

namespace orvalen {

int ProcessorsAffinity::activeCount()
{
    // The kernel refuses a set that is smaller than its own, whose size it does not tell.
    constexpr std::size_t enough = 1024;
    for (std::size_t sets = 1; sets <= enough; sets *= 2) {
        std::vector<cpu_set_t> cores(sets);
        const auto bytes = sets * sizeof(cpu_set_t);
        if (::sched_getaffinity(0, bytes, cores.data()) == 0)
            return std::max(1, CPU_COUNT_S(bytes, cores.data()));
        if (errno != EINVAL)
            break;
    }
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

} // namespace orvalen
