#include "platform/linux/ProgramInstanceDBus.h"

#include <QDBusConnection>
#include <QSocketNotifier>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <string_view>
#include <systemd/sd-bus.h>
#include <thread>
#include <utility>

namespace orvalen {

namespace {

using std::chrono::microseconds;
using std::chrono::steady_clock;

constexpr const char *interfaceName = "org.freedesktop.Application";
constexpr const char *startupId = "desktop-startup-id";
constexpr const char *activationToken = "activation-token";

struct Release
{
    void operator()(sd_bus_message *message) const { sd_bus_message_unref(message); }
};
using Message = std::unique_ptr<sd_bus_message, Release>;

class Error
{
public:
    Error() = default;
    ~Error() { sd_bus_error_free(&error); }
    Error(const Error &) = delete;
    Error &operator=(const Error &) = delete;

    [[nodiscard]] bool isAnyOf(std::initializer_list<const char *> names) const
    {
        return std::any_of(names.begin(), names.end(),
                           [this](const char *name) { return sd_bus_error_has_name(&error, name) != 0; });
    }

    sd_bus_error error = {};
};

class Deadline
{
public:
    explicit Deadline(std::chrono::milliseconds patience) : end(steady_clock::now() + patience) {}

    /// Never 0, which the library takes for its own, long one.
    [[nodiscard]] std::uint64_t left() const
    {
        const auto time = std::chrono::duration_cast<microseconds>(end - steady_clock::now());
        return static_cast<std::uint64_t>(std::max(time, microseconds(1)).count());
    }

    [[nodiscard]] bool isOver() const { return steady_clock::now() >= end; }

private:
    steady_clock::time_point end;
};

/// The desktop entry specification's rule.
std::string pathOf(std::string_view busName)
{
    std::string path = "/";
    std::transform(busName.begin(), busName.end(), std::back_inserter(path), [](char letter) {
        if (letter == '.')
            return '/';
        return letter == '-' ? '_' : letter;
    });
    return path;
}

/// The toolkit would wait for a silent bus without end, and the window with it. From now on there is none for it: the
/// library below it keeps the first address that it is given. What this process starts inherits the true one. Before
/// other threads read the environment.
void forgetBus()
{
    constexpr const char *variable = "DBUS_SESSION_BUS_ADDRESS";
    const char *const value = std::getenv(variable);
    const auto address = value ? std::optional<std::string>(value) : std::nullopt;
    ::setenv(variable, "disabled:", 1);
    const auto unasked = QStringLiteral("none");
    QDBusConnection::connectToBus(QDBusConnection::SessionBus, unasked);
    QDBusConnection::disconnectFromBus(unasked);
    if (address)
        ::setenv(variable, address->c_str(), 1);
    else
        ::unsetenv(variable);
}

/// Begins to connect. A bus to which too many are on their way already, as to one that has stopped, is asked again.
int open(sd_bus *&bus, const Deadline &deadline)
{
    for (;;) {
        const int done = sd_bus_open_user(&bus);
        if (done != -EAGAIN || deadline.isOver())
            return done;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

/// The library itself would wait for minutes until it is connected.
bool connected(sd_bus *bus, const Deadline &deadline)
{
    for (;;) {
        if (sd_bus_is_ready(bus) != 0)
            return sd_bus_is_ready(bus) > 0;
        const int done = sd_bus_process(bus, nullptr);
        if (done < 0 || deadline.isOver())
            return false;
        if (done > 0)
            continue;
        if (const int waited = sd_bus_wait(bus, deadline.left()); waited < 0 && waited != -EINTR)
            return false;
    }
}

/// Whether the name is ours now; nothing where the bus does not say.
std::optional<bool> hasTaken(sd_bus *bus, const std::string &name, const Deadline &deadline)
{
    constexpr std::uint32_t doNotQueue = 4;
    constexpr std::uint32_t primaryOwner = 1;
    constexpr std::uint32_t exists = 3;

    sd_bus_message *made = nullptr;
    if (sd_bus_message_new_method_call(bus, &made, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                       "org.freedesktop.DBus", "RequestName") < 0)
        return std::nullopt;
    const Message question(made);
    sd_bus_message *answered = nullptr;
    if (sd_bus_message_append(question.get(), "su", name.c_str(), doNotQueue) < 0 ||
        sd_bus_call(bus, question.get(), deadline.left(), nullptr, &answered) < 0)
        return std::nullopt;
    const Message answer(answered);
    std::uint32_t result = 0;
    if (sd_bus_message_read(answer.get(), "u", &result) < 0 || (result != primaryOwner && result != exists))
        return std::nullopt;
    return result == primaryOwner;
}

enum class Neighbour
{
    asked,   ///< It shows itself, or will.
    gone,    ///< It has ended meanwhile.
    foreign, ///< It does not know what we ask for.
};

/// What the desktop gave to this process.
int appendPlatformData(sd_bus_message *message)
{
    int done = sd_bus_message_open_container(message, 'a', "{sv}");
    for (const auto &[key, variable] :
         {std::pair(startupId, "DESKTOP_STARTUP_ID"), std::pair(activationToken, "XDG_ACTIVATION_TOKEN")}) {
        const char *const value = std::getenv(variable);
        if (done >= 0 && value && *value)
            done = sd_bus_message_append(message, "{sv}", key, "s", value);
    }
    return done < 0 ? done : sd_bus_message_close_container(message);
}

Neighbour activate(sd_bus *bus, const std::string &name, const std::string &path, const Deadline &deadline)
{
    sd_bus_message *made = nullptr;
    if (sd_bus_message_new_method_call(bus, &made, name.c_str(), path.c_str(), interfaceName, "Activate") < 0)
        return Neighbour::foreign;
    const Message request(made);
    sd_bus_message_set_auto_start(request.get(), false);
    if (appendPlatformData(request.get()) < 0)
        return Neighbour::foreign; // what we were given is no text
    Error error;
    if (sd_bus_call(bus, request.get(), deadline.left(), &error.error, nullptr) >= 0)
        return Neighbour::asked;
    if (error.isAnyOf({SD_BUS_ERROR_NAME_HAS_NO_OWNER, SD_BUS_ERROR_SERVICE_UNKNOWN, SD_BUS_ERROR_NO_REPLY}))
        return Neighbour::gone;
    return error.isAnyOf({SD_BUS_ERROR_TIMEOUT}) ? Neighbour::asked : Neighbour::foreign;
}

/// The token among the platform data, which is what comes next in the message.
int readToken(sd_bus_message *message, std::string &token)
{
    int done = sd_bus_message_enter_container(message, 'a', "{sv}");
    while (done >= 0 && (done = sd_bus_message_enter_container(message, 'e', "sv")) > 0) {
        const char *key = nullptr;
        const char *contents = nullptr;
        const char *value = nullptr;
        char type = 0;
        if ((done = sd_bus_message_read(message, "s", &key)) < 0 ||
            (done = sd_bus_message_peek_type(message, &type, &contents)) < 0)
            return done;
        const bool isStartupId = std::string_view(key) == startupId;
        if ((isStartupId || std::string_view(key) == activationToken) && std::string_view(contents) == "s") {
            done = sd_bus_message_read(message, "v", "s", &value);
            if (done >= 0 && (isStartupId || token.empty()))
                token = value;
        } else {
            done = sd_bus_message_skip(message, "v");
        }
        if (done >= 0)
            done = sd_bus_message_exit_container(message);
    }
    return done;
}

int onActivate(sd_bus_message *call, void *self, sd_bus_error *)
{
    std::string token;
    if (const int done = readToken(call, token); done < 0)
        return done;
    static_cast<ProgramInstanceDBus *>(self)->served().activate(token);
    return sd_bus_reply_method_return(call, nullptr);
}

/// There is nothing that we could open: shows the program.
int onOpen(sd_bus_message *call, void *self, sd_bus_error *error)
{
    if (const int done = sd_bus_message_skip(call, "as"); done < 0)
        return done;
    return onActivate(call, self, error);
}

int onActivateAction(sd_bus_message *call, void *self, sd_bus_error *)
{
    const char *name = nullptr;
    std::string token;
    int done = sd_bus_message_read(call, "s", &name);
    if (done >= 0)
        done = sd_bus_message_skip(call, "av");
    if (done >= 0)
        done = readToken(call, token);
    if (done < 0)
        return done;
    static_cast<ProgramInstanceDBus *>(self)->served().performAction(name, token);
    return sd_bus_reply_method_return(call, nullptr);
}

const sd_bus_vtable methods[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Activate", "a{sv}", "", onActivate, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("Open", "asa{sv}", "", onOpen, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("ActivateAction", "sava{sv}", "", onActivateAction, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

} // namespace

void ProgramInstanceDBus::Close::operator()(sd_bus *bus) const
{
    sd_bus_close_unref(bus);
}

ProgramInstanceDBus::ProgramInstanceDBus(std::string busName, std::chrono::milliseconds patience)
    : busName(std::move(busName)), path(pathOf(this->busName)), patience(patience)
{
}

ProgramInstanceDBus::~ProgramInstanceDBus() = default;

// A connection of its own: the toolkit's cost more, and share one thread that a silent bus would hold up.
bool ProgramInstanceDBus::begin()
{
    const Deadline deadline(patience);
    sd_bus *opened = nullptr;
    const int isOpen = open(opened, deadline);
    std::unique_ptr<sd_bus, Close> ours(opened);
    auto neighbour = Neighbour::gone;
    if (isOpen >= 0 && connected(ours.get(), deadline)) {
        while (neighbour == Neighbour::gone) {
            const auto isTaken = hasTaken(ours.get(), busName, deadline);
            if (!isTaken)
                break;
            if (*isTaken) {
                bus = std::move(ours);
                return true;
            }
            neighbour = activate(ours.get(), busName, path, deadline);
        }
    }
    if (neighbour == Neighbour::gone && deadline.isOver())
        forgetBus(); // which has not said a word when it should have
    return neighbour != Neighbour::asked;
}

void ProgramInstanceDBus::serve(Requests answers)
{
    requests = std::move(answers);
    if (!bus || sd_bus_add_object_vtable(bus.get(), nullptr, path.c_str(), interfaceName, methods, this) < 0)
        return;
    calls = std::make_unique<QSocketNotifier>(sd_bus_get_fd(bus.get()), QSocketNotifier::Read);
    QObject::connect(calls.get(), &QSocketNotifier::activated, calls.get(), [this] { answer(); });
    answer();
}

void ProgramInstanceDBus::answer()
{
    while (sd_bus_process(bus.get(), nullptr) > 0) {
    }
    if (sd_bus_is_open(bus.get()) <= 0)
        calls->setEnabled(false); // the bus is gone, and nobody can ask any more
}

} // namespace orvalen
