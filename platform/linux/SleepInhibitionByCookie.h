#pragma once

#include <cstdint>
#include <string>

#include "platform/linux/BusConnection.h"
#include "platform/linux/SleepInhibitor.h"

namespace orvalen {

/// What a service granted by way of a number: it is given back to the very process that granted it, since the number
/// may stand for somebody else's wish in another one that took its place.
class SleepInhibitionByCookie : public SleepInhibition
{
public:
    /// From the `answer` that came over `connection`; `release` takes the number. Null if there is none in it.
    static std::unique_ptr<SleepInhibition> from(sd_bus_message &answer, BusConnection connection,
                                                 const BusMethod &release);

    SleepInhibitionByCookie(BusConnection connection, std::string granter, const BusMethod &release,
                            std::uint32_t cookie);
    ~SleepInhibitionByCookie() override;

private:
    BusConnection connection; ///< The service watches it: when it ends, so does the inhibition.
    std::string granter;      ///< Its own name on the bus, that no other process ever has.
    BusMethod release;
    std::uint32_t cookie;
};

} // namespace orvalen
