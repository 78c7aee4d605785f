#include "platform/linux/HostNameAvahi.h"

#include <unistd.h>

#include "platform/linux/BusConnection.h"

namespace orvalen {

namespace {

constexpr BusMethod getHostName{.service = "org.freedesktop.Avahi",
                                .path = "/",
                                .interface = "org.freedesktop.Avahi.Server",
                                .name = "GetHostName",
                                .startsService = false};
constexpr std::size_t longestName = 256; ///< Bytes with the end; a host name has fewer on every system.

} // namespace

HostNameAvahi::HostNameAvahi(std::chrono::milliseconds patience) : patience(patience) {}

std::optional<std::string> HostNameAvahi::multicastName()
{
    BusConnection bus(BusConnection::Bus::system);
    const auto answer = bus.ask(getHostName, std::chrono::steady_clock::now() + patience, "");
    const char *name = nullptr;
    if (!answer || sd_bus_message_read(answer.get(), "s", &name) < 0)
        return std::nullopt;
    return name;
}

std::string HostNameAvahi::processName()
{
    char name[longestName] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

} // namespace orvalen
