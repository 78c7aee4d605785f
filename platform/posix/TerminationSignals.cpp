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

void handle(int signal, void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(signal, &action, nullptr);
}

void leave(int)
{
    ::_exit(0);
}

void tell(int signal)
{
    const int before = errno;
    handle(signal, leave); // whoever asks again does not want to wait
    const char byte = 1;
    [[maybe_unused]] const auto written = ::write(pipeEnds[1], &byte, 1); // full: it has been told already
    errno = before;
}

void handleAll(void (*handler)(int))
{
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        handle(signal, handler);
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
    handleAll(leave);
}

void TerminationSignals::attend() const
{
    if (descriptor() >= 0)
        handleAll(tell);
}

int TerminationSignals::descriptor() const
{
    return pipeEnds[0];
}

} // namespace orvalen
