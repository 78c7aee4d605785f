#include "streaming/server/ProcessSetup.h"

#include <algorithm>
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "streaming/server/Contract.h"

namespace orvalen {

void prepareProcess()
{
    ::umask(077);

    for (const int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT, SIGCHLD})
        std::signal(number, SIG_DFL);
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);

    for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
        if (::fcntl(stream, F_GETFD) < 0 && ::open("/dev/null", O_RDWR) < 0)
            return;
    }
}

std::size_t connectionsPossible()
{
    constexpr rlim_t wanted = limits::connections + limits::otherDescriptors;
    rlimit allowed = {};
    if (::getrlimit(RLIMIT_NOFILE, &allowed) != 0)
        return limits::otherDescriptors;
    if (allowed.rlim_cur < wanted) {
        const auto before = allowed.rlim_cur;
        allowed.rlim_cur = std::min(wanted, allowed.rlim_max);
        if (::setrlimit(RLIMIT_NOFILE, &allowed) != 0)
            allowed.rlim_cur = before;
    }
    const auto left = allowed.rlim_cur > limits::otherDescriptors ? allowed.rlim_cur - limits::otherDescriptors : 1;
    return static_cast<std::size_t>(std::min<rlim_t>(left, limits::connections));
}

} // namespace orvalen
