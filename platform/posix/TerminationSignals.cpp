#include "platform/posix/TerminationSignals.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <initializer_list>
#include <unistd.h>

namespace orvalen {

namespace {

// A signal handler reaches nothing but what is static.
int pipeEnds[2] = {-1, -1};

void tell(int)
{
    const int before = errno;
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], &byte, 1); // full: it has been told already
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals()
{
    if (::pipe(pipeEnds) != 0)
        return;
    for (const int end : pipeEnds) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    struct sigaction action = {};
    action.sa_handler = tell;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}

int TerminationSignals::descriptor() const
{
    return pipeEnds[0];
}

} // namespace orvalen
