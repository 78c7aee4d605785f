#include "platform/qt/ThreadName.h"

#include <pthread.h>

namespace orvalen {

void nameThisThread(const std::string &name)
{
#ifdef __APPLE__
    pthread_setname_np(name.c_str());
#else
    constexpr std::string::size_type longestName = 15; // Linux refuses a longer one instead of cutting it.
    pthread_setname_np(pthread_self(), name.substr(0, longestName).c_str());
#endif
}

} // namespace orvalen
