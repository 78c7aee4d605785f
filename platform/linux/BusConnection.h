#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

#include <systemd/sd-bus.h>

namespace orvalen {

/// An operation of a service on a message bus.
struct BusMethod
{
    const char *service = nullptr;
    const char *path = nullptr;
    const char *interface = nullptr;
    const char *name = nullptr;
    bool startsService = true; ///< Where it is not there.
};

/// A connection to a message bus that nobody else uses, so that what a service gave to it ends with it: at the latest
/// when the process does, however it ends. Every wait has an end too, also while the bus itself says nothing. That is
/// why it is not one of the toolkit's connections, which share a thread that may hang in one of them. One thread only.
class BusConnection
{
public:
    using Deadline = std::chrono::steady_clock::time_point;

    enum class Bus
    {
        session,
        system,
    };

    /// Without such a bus every question stays unanswered.
    explicit BusConnection(Bus bus);

    /// Whether somebody has that name, or would be started to; std::nullopt if the bus does not say so in time.
    [[nodiscard]] std::optional<bool> offers(const char *service, Deadline deadline);

    struct LetGo
    {
        void operator()(sd_bus_message *message) const { sd_bus_message_unref(message); }
    };
    using Message = std::unique_ptr<sd_bus_message, LetGo>;

    /// The answer of a service. Null if that is an error or does not come in time.
    /// The arguments are written as the library wants them for `types`.
    template <typename... Arguments>
    [[nodiscard]] Message ask(const BusMethod &method, Deadline deadline, const char *types, Arguments... arguments)
    {
        const auto question = newCall(method);
        if (!question || sd_bus_message_append(question.get(), types, arguments...) < 0)
            return nullptr;
        return answerTo(*question, deadline);
    }

    /// Says something and does not wait for an answer. Nobody is started to hear it.
    template <typename... Arguments>
    void tell(const BusMethod &method, const char *types, Arguments... arguments)
    {
        const auto call = newCall(method);
        if (call && sd_bus_message_append(call.get(), types, arguments...) >= 0)
            send(*call);
    }

    using Receive = std::function<void(sd_bus_message &)>;
    class Following; ///< Ends when it is destroyed.
    struct EndFollowing
    {
        void operator()(Following *following) const;
    };

    /// Delivers a service's signals of that name, from whichever object, while this connection waits for something.
    [[nodiscard]] std::unique_ptr<Following, EndFollowing> follow(const char *service, const char *interface,
                                                                  const char *signal, Receive receive);

    /// Waits until `isOver` is true, and returns its last answer.
    bool waitFor(const std::function<bool()> &isOver, Deadline deadline);

private:
    struct Close
    {
        void operator()(sd_bus *bus) const { sd_bus_close_unref(bus); }
    };

    Message newCall(const BusMethod &method);
    Message answerTo(sd_bus_message &question, Deadline deadline);
    void send(sd_bus_message &call);

    std::unique_ptr<sd_bus, Close> bus; ///< Null without one.
};

} // namespace orvalen
