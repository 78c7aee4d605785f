#include "platform/macos/ProcessorsSysctl.h"

#include <algorithm>
#include <sys/sysctl.h>

namespace orvalen {

int ProcessorsSysctl::activeCount()
{
    int count = 0;
    std::size_t size = sizeof count;
    if (::sysctlbyname("hw.activecpu", &count, &size, nullptr, 0) != 0 || size != sizeof count)
        return 1;
    return std::max(1, count);
}

} // namespace orvalen
