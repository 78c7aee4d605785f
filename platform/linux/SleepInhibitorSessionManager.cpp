#include "platform/linux/SleepInhibitorSessionManager.h"

#include <utility>

#include "platform/linux/BusConnection.h"
#include "platform/linux/SleepInhibitionByCookie.h"

namespace orvalen {

namespace {

constexpr auto service = "org.gnome.SessionManager";
constexpr auto path = "/org/gnome/SessionManager";
constexpr BusMethod inhibitMethod{service, path, service, "Inhibit"};
constexpr BusMethod uninhibitMethod{service, path, service, "Uninhibit"};
constexpr std::uint32_t noWindow = 0;
constexpr std::uint32_t suspending = 4; // of the flags

} // namespace

SleepInhibitorSessionManager::SleepInhibitorSessionManager(std::string applicationId,
                                                           std::chrono::milliseconds patience)
    : applicationId(std::move(applicationId)), patience(patience)
{
}

std::optional<bool> SleepInhibitorSessionManager::isAvailable(Deadline deadline)
{
    return BusConnection(BusConnection::Bus::session).offers(service, soon(deadline, patience));
}

std::unique_ptr<SleepInhibition> SleepInhibitorSessionManager::inhibit(const std::string &reason, Deadline deadline)
{
    BusConnection connection(BusConnection::Bus::session);
    const auto answer = connection.ask(inhibitMethod, soon(deadline, patience), "susu", applicationId.c_str(), noWindow,
                                       reason.c_str(), suspending);
    if (!answer)
        return nullptr;
    return SleepInhibitionByCookie::from(*answer, std::move(connection), uninhibitMethod);
}

} // namespace orvalen
