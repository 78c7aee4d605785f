#include "platform/linux/HostNameAvahi.h"

#include <memory>

#include <systemd/sd-bus.h>
#include <unistd.h>

namespace orvalen {

namespace {

constexpr const char *service = "org.freedesktop.Avahi";
constexpr std::size_t longestName = 256; ///< Bytes with the end; a host name has fewer on every system.

template <typename Thing, Thing *(*letGo)(Thing *)>
struct LetGo
{
    void operator()(Thing *thing) const { letGo(thing); }
};
using Bus = std::unique_ptr<sd_bus, LetGo<sd_bus, sd_bus_close_unref>>;
using Message = std::unique_ptr<sd_bus_message, LetGo<sd_bus_message, sd_bus_message_unref>>;

// Not by way of the toolkit: all its connections share one thread, which waits for a bus that takes a connection and
// then says nothing, and the whole program with it. This one is its own.
std::optional<std::string> announcedName(std::chrono::microseconds patience)
{
    sd_bus *connected = nullptr;
    if (sd_bus_open_system(&connected) < 0)
        return std::nullopt;
    const Bus bus(connected);

    sd_bus_message *made = nullptr;
    if (sd_bus_message_new_method_call(bus.get(), &made, service, "/", "org.freedesktop.Avahi.Server", "GetHostName") <
        0)
        return std::nullopt;
    const Message question(made);
    sd_bus_message_set_auto_start(question.get(), false);

    sd_bus_message *answered = nullptr;
    if (sd_bus_call(bus.get(), question.get(), static_cast<std::uint64_t>(patience.count()), nullptr, &answered) < 0)
        return std::nullopt;
    const Message answer(answered);
    const char *name = nullptr;
    if (sd_bus_message_read(answer.get(), "s", &name) < 0)
        return std::nullopt;
    return name;
}

} // namespace

HostNameAvahi::HostNameAvahi(std::chrono::milliseconds patience)
    : question([patience] { return announcedName(patience); }, patience)
{
}

std::optional<std::string> HostNameAvahi::multicastName()
{
    return question.ask().value_or(std::nullopt);
}

std::string HostNameAvahi::processName()
{
    char name[longestName] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? name : "";
}

} // namespace orvalen
