#include "platform/linux/SleepInhibitionByCookie.h"

#include <utility>

namespace orvalen {

std::unique_ptr<SleepInhibition> SleepInhibitionByCookie::from(sd_bus_message &answer, BusConnection connection,
                                                               const BusMethod &release)
{
    const char *granter = sd_bus_message_get_sender(&answer);
    std::uint32_t cookie = 0;
    if (!granter || sd_bus_message_read(&answer, "u", &cookie) <= 0)
        return nullptr;
    return std::make_unique<SleepInhibitionByCookie>(std::move(connection), granter, release, cookie);
}

SleepInhibitionByCookie::SleepInhibitionByCookie(BusConnection connection, std::string granter,
                                                 const BusMethod &release, std::uint32_t cookie)
    : connection(std::move(connection)), granter(std::move(granter)), release(release), cookie(cookie)
{
}

SleepInhibitionByCookie::~SleepInhibitionByCookie()
{
    connection.tell({granter.c_str(), release.path, release.interface, release.name}, "u", cookie);
}

} // namespace orvalen
