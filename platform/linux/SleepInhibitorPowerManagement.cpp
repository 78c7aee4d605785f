#include "platform/linux/SleepInhibitorPowerManagement.h"

#include <algorithm>
#include <utility>

#include "platform/linux/BusConnection.h"
#include "platform/linux/SleepInhibitionByCookie.h"

namespace orvalen {

namespace {

constexpr auto path = "/org/freedesktop/PowerManagement/Inhibit";
constexpr auto interface = "org.freedesktop.PowerManagement.Inhibit";

// Plasma has both names, Xfce the first one, some others the second.
const char *service(BusConnection &connection, SleepInhibitor::Deadline deadline)
{
    for (const auto *name : {"org.freedesktop.PowerManagement", interface}) {
        if (connection.offers(name, deadline))
            return name;
    }
    return nullptr;
}

} // namespace

SleepInhibitorPowerManagement::SleepInhibitorPowerManagement(std::string application,
                                                             std::chrono::milliseconds patience)
    : application(std::move(application)), patience(patience)
{
}

bool SleepInhibitorPowerManagement::isAvailable(Deadline deadline)
{
    BusConnection connection(BusConnection::Bus::session);
    return service(connection, soon(deadline, patience)) != nullptr;
}

std::unique_ptr<SleepInhibition> SleepInhibitorPowerManagement::inhibit(const std::string &reason, Deadline deadline)
{
    BusConnection connection(BusConnection::Bus::session);
    const auto limit = soon(deadline, patience);
    const auto *name = service(connection, limit);
    if (!name)
        return nullptr;
    const auto answer =
        connection.ask({name, path, interface, "Inhibit"}, limit, "ss", application.c_str(), reason.c_str());
    if (!answer)
        return nullptr;
    return SleepInhibitionByCookie::from(*answer, std::move(connection), {name, path, interface, "UnInhibit"});
}

} // namespace orvalen
