#include "app/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace orvalen {

namespace {

constexpr std::array requests = {SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> ends = {-1, -1}; // of the pipe: a handler may do little more than write to one

void pass(int)
{
    const int before = errno;
    const char any = 0;
    [[maybe_unused]] const auto written = write(ends[1], &any, 1); // a full pipe says the same
    errno = before;
}

} // namespace

TerminationSignals::TerminationSignals()
{
    if (pipe(ends.data()) != 0)
        return;
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto *notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, QCoreApplication::instance(), &QCoreApplication::quit);
    for (const int request : requests)
        std::signal(request, pass);
}

TerminationSignals::~TerminationSignals()
{
    for (const int request : requests)
        std::signal(request, SIG_DFL);
    for (int &end : ends) {
        close(end);
        end = -1;
    }
}

} // namespace orvalen
