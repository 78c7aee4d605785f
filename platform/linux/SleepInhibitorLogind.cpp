#include "platform/linux/SleepInhibitorLogind.h"

#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/BusConnection.h"

namespace orvalen {

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr BusMethod inhibitMethod{service, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", "Inhibit"};

/// A lock holds as long as a descriptor is open anywhere.
class Lock : public SleepInhibition
{
public:
    explicit Lock(int descriptor) : descriptor(descriptor) {}
    ~Lock() override { ::close(descriptor); }

private:
    int descriptor;
};

} // namespace

SleepInhibitorLogind::SleepInhibitorLogind(std::string application, std::chrono::milliseconds patience)
    : application(std::move(application)), patience(patience)
{
}

std::optional<bool> SleepInhibitorLogind::isAvailable(Deadline deadline)
{
    return BusConnection(BusConnection::Bus::system).offers(service, soon(deadline, patience));
}

std::unique_ptr<SleepInhibition> SleepInhibitorLogind::inhibit(const std::string &reason, Deadline deadline)
{
    BusConnection connection(BusConnection::Bus::system);
    const auto answer = connection.ask(inhibitMethod, soon(deadline, patience), "ssss", "idle", application.c_str(),
                                       reason.c_str(), "block");
    int theirs = -1;
    if (!answer || sd_bus_message_read(answer.get(), "h", &theirs) <= 0)
        return nullptr;
    // The one in the answer goes with it. No child of ours may inherit the other: some outlive us.
    const int ours = ::fcntl(theirs, F_DUPFD_CLOEXEC, 3);
    return ours < 0 ? nullptr : std::make_unique<Lock>(ours);
}

} // namespace orvalen
