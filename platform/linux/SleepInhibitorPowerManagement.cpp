#include "platform/linux/SleepInhibitorPowerManagement.h"

#include <array>
#include <utility>

#include "platform/linux/BusConnection.h"
#include "platform/linux/SleepInhibitionByCookie.h"

namespace orvalen {

namespace {

constexpr auto path = "/org/freedesktop/PowerManagement/Inhibit";
constexpr auto interface = "org.freedesktop.PowerManagement.Inhibit";

// Plasma has both, Xfce the first one, some others the second.
constexpr std::array names = {"org.freedesktop.PowerManagement", interface};

} // namespace

SleepInhibitorPowerManagement::SleepInhibitorPowerManagement(std::string application,
                                                             std::chrono::milliseconds patience)
    : application(std::move(application)), patience(patience), service(names.front())
{
}

std::optional<bool> SleepInhibitorPowerManagement::isAvailable(Deadline deadline)
{
    BusConnection connection(BusConnection::Bus::session);
    const auto limit = soon(deadline, patience);
    for (const auto *name : names) {
        service = name;
        if (const auto isOffered = connection.offers(name, limit); isOffered != false)
            return isOffered;
    }
    return false;
}

std::unique_ptr<SleepInhibition> SleepInhibitorPowerManagement::inhibit(const std::string &reason, Deadline deadline)
{
    BusConnection connection(BusConnection::Bus::session);
    const auto answer = connection.ask({service, path, interface, "Inhibit"}, soon(deadline, patience), "ss",
                                       application.c_str(), reason.c_str());
    if (!answer)
        return nullptr;
    return SleepInhibitionByCookie::from(*answer, std::move(connection), {service, path, interface, "UnInhibit"});
}

} // namespace orvalen
