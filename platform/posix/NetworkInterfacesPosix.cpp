#include "platform/posix/NetworkInterfacesPosix.h"

#include <memory>

#include <ifaddrs.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace orvalen {

namespace {

constexpr std::size_t longestHost = 1025; ///< Characters and the end, NI_MAXHOST where there is one.

NetworkInterface::Family familyOf(const sockaddr *address)
{
    if (!address)
        return NetworkInterface::Family::none;
    return address->sa_family == AF_INET ? NetworkInterface::Family::ipv4 : NetworkInterface::Family::other;
}

std::optional<std::string> written(const sockaddr *address)
{
    char host[longestHost];
    if (::getnameinfo(address, sizeof(sockaddr_in), host, sizeof host, nullptr, 0, NI_NUMERICHOST) != 0)
        return std::nullopt;
    return host;
}

} // namespace

std::optional<std::vector<NetworkInterface>> NetworkInterfacesPosix::list()
{
    ifaddrs *first = nullptr;
    if (::getifaddrs(&first) != 0)
        return std::nullopt;
    const std::unique_ptr<ifaddrs, decltype(&::freeifaddrs)> list(first, ::freeifaddrs);

    std::vector<NetworkInterface> result;
    for (const ifaddrs *entry = first; entry; entry = entry->ifa_next) {
        const auto family = familyOf(entry->ifa_addr);
        result.push_back(
            {.name = entry->ifa_name,
             .isUp = (entry->ifa_flags & IFF_UP) != 0,
             .isRunning = (entry->ifa_flags & IFF_RUNNING) != 0,
             .isLoopback = (entry->ifa_flags & IFF_LOOPBACK) != 0,
             .family = family,
             .address = family == NetworkInterface::Family::ipv4 ? written(entry->ifa_addr) : std::nullopt});
    }
    return result;
}

} // namespace orvalen
