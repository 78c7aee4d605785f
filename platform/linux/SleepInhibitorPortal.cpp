#include "platform/linux/SleepInhibitorPortal.h"

#include <cstdint>
#include <map>
#include <utility>

#include "platform/linux/BusConnection.h"

namespace orvalen {

namespace {

constexpr auto service = "org.freedesktop.portal.Desktop";
constexpr BusMethod inhibitMethod{service, "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Inhibit",
                                  "Inhibit"};
constexpr auto requestInterface = "org.freedesktop.portal.Request";
constexpr auto noWindow = "";
constexpr std::uint32_t suspending = 4; // of the flags
constexpr std::uint32_t granted = 0;    // of the responses

/// A request, granted or not yet: closed with this.
class Request : public SleepInhibition
{
public:
    Request(BusConnection connection, std::string granter, std::string path)
        : connection(std::move(connection)), granter(std::move(granter)), path(std::move(path))
    {
    }
    ~Request() override { connection.tell({granter.c_str(), path.c_str(), requestInterface, "Close"}, ""); }

    BusConnection connection;

private:
    std::string granter; ///< Its own name on the bus.
    std::string path;
};

} // namespace

SleepInhibitorPortal::SleepInhibitorPortal(const SleepPatience &patience) : patience(patience) {}

std::optional<bool> SleepInhibitorPortal::isAvailable(Deadline deadline)
{
    return BusConnection(BusConnection::Bus::session).offers(service, soon(deadline, patience.answer));
}

std::unique_ptr<SleepInhibition> SleepInhibitorPortal::inhibit(const std::string &reason, Deadline deadline)
{
    BusConnection connection(BusConnection::Bus::session);

    // Before the request: the response may be there before anybody knows which request it belongs to.
    std::map<std::string, std::uint32_t> responses;
    const auto following =
        connection.follow(service, requestInterface, "Response", [&responses](sd_bus_message &signal) {
            std::uint32_t response = 0;
            if (sd_bus_message_read(&signal, "u", &response) > 0)
                responses.emplace(sd_bus_message_get_path(&signal), response);
        });

    const auto answer = connection.ask(inhibitMethod, soon(deadline, patience.start), "sua{sv}", noWindow, suspending,
                                       1, "reason", "s", reason.c_str());
    if (!answer)
        return nullptr;
    const char *granter = sd_bus_message_get_sender(answer.get());
    const char *path = nullptr;
    if (!granter || sd_bus_message_read(answer.get(), "o", &path) <= 0)
        return nullptr;
    auto request = std::make_unique<Request>(std::move(connection), granter, path);
    request->connection.waitFor([&] { return responses.contains(path); }, soon(deadline, patience.response));
    const auto response = responses.find(path);
    if (response == responses.end() || response->second != granted)
        return nullptr;
    return request;
}

} // namespace orvalen
