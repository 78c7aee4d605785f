#include "platform/linux/BusConnection.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <utility>

namespace orvalen {

namespace {

constexpr auto daemonName = "org.freedesktop.DBus";
constexpr auto daemonPath = "/org/freedesktop/DBus";
constexpr BusMethod nameHasOwner{daemonName, daemonPath, daemonName, "NameHasOwner"};
constexpr BusMethod listActivatableNames{daemonName, daemonPath, daemonName, "ListActivatableNames"};

struct EndSlot
{
    void operator()(sd_bus_slot *slot) const { sd_bus_slot_unref(slot); }
};
using Slot = std::unique_ptr<sd_bus_slot, EndSlot>;

int keepAnswer(sd_bus_message *answer, void *place, sd_bus_error *)
{
    static_cast<BusConnection::Message *>(place)->reset(sd_bus_message_ref(answer));
    return 0;
}

bool isIn(sd_bus_message &listOfNames, const char *wanted)
{
    if (sd_bus_message_enter_container(&listOfNames, 'a', "s") < 0)
        return false;
    const char *name = nullptr;
    while (sd_bus_message_read(&listOfNames, "s", &name) > 0) {
        if (std::strcmp(name, wanted) == 0)
            return true;
    }
    return false;
}

} // namespace

class BusConnection::Following
{
public:
    explicit Following(Receive receive) : receive(std::move(receive)) {}

    static int hear(sd_bus_message *signal, void *following, sd_bus_error *)
    {
        static_cast<Following *>(following)->receive(*signal);
        return 0;
    }

    Receive receive;
    Slot slot;
};

void BusConnection::EndFollowing::operator()(Following *following) const
{
    delete following;
}

BusConnection::BusConnection(Bus which)
{
    sd_bus *opened = nullptr;
    // Begins to connect, and goes on with that whenever it waits.
    const int result = which == Bus::session ? sd_bus_open_user(&opened) : sd_bus_open_system(&opened);
    if (result >= 0)
        bus.reset(opened);
}

std::optional<bool> BusConnection::offers(const char *service, Deadline deadline)
{
    int isOwned = 0;
    const auto owned = ask(nameHasOwner, deadline, "s", service);
    if (owned && sd_bus_message_read(owned.get(), "b", &isOwned) > 0 && isOwned != 0)
        return true;
    const auto startable = ask(listActivatableNames, deadline, "");
    if (startable)
        return isIn(*startable, service);
    if (bus && std::chrono::steady_clock::now() >= deadline)
        return std::nullopt;
    return false;
}

std::unique_ptr<BusConnection::Following, BusConnection::EndFollowing>
BusConnection::follow(const char *service, const char *interface, const char *signal, Receive receive)
{
    std::unique_ptr<Following, EndFollowing> following(new Following(std::move(receive)));
    sd_bus_slot *slot = nullptr;
    if (bus && sd_bus_match_signal_async(bus.get(), &slot, service, nullptr, interface, signal, &Following::hear,
                                         nullptr, following.get()) >= 0)
        following->slot.reset(slot);
    return following;
}

bool BusConnection::waitFor(const std::function<bool()> &isOver, Deadline deadline)
{
    using namespace std::chrono;

    while (!isOver()) {
        const auto left = deadline - steady_clock::now();
        if (!bus || left <= left.zero())
            return false;
        const int progress = sd_bus_process(bus.get(), nullptr);
        if (progress > 0)
            continue;
        if (progress < 0)
            return false;
        const auto patience = static_cast<std::uint64_t>(ceil<microseconds>(left).count());
        if (const int waited = sd_bus_wait(bus.get(), patience); waited < 0 && waited != -EINTR)
            return false;
    }
    return true;
}

BusConnection::Message BusConnection::newCall(const BusMethod &method)
{
    sd_bus_message *made = nullptr;
    if (!bus || sd_bus_message_new_method_call(bus.get(), &made, method.service, method.path, method.interface,
                                               method.name) < 0)
        return nullptr;
    sd_bus_message_set_auto_start(made, method.startsService ? 1 : 0);
    return Message(made);
}

BusConnection::Message BusConnection::answerTo(sd_bus_message &question, Deadline deadline)
{
    Message answer;
    sd_bus_slot *made = nullptr;
    if (sd_bus_call_async(bus.get(), &made, &question, keepAnswer, &answer, UINT64_MAX) < 0)
        return nullptr;
    const Slot slot(made); // without it nothing more is kept
    waitFor([&] { return answer != nullptr; }, deadline);
    if (!answer || sd_bus_message_is_method_error(answer.get(), nullptr))
        return nullptr;
    return answer;
}

void BusConnection::send(sd_bus_message &call)
{
    sd_bus_message_set_auto_start(&call, 0);
    sd_bus_message_set_expect_reply(&call, 0);
    sd_bus_send(bus.get(), &call, nullptr);
}

} // namespace orvalen
