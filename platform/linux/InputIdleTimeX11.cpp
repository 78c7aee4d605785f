#include "platform/linux/InputIdleTimeX11.h"

#include <cstdlib>
#include <poll.h>
#include <string_view>
#include <xcb/screensaver.h>
#include <xcb/xcb.h>
#include <xcb/xcbext.h>

#include "platform/linux/X11Session.h"

namespace orvalen {

namespace {

using x11::Reply;

constexpr std::chrono::milliseconds patience{500};

bool has(xcb_connection_t *xcb, std::string_view extension)
{
    const auto cookie = xcb_query_extension(xcb, static_cast<std::uint16_t>(extension.size()), extension.data());
    const Reply<xcb_query_extension_reply_t> reply(xcb_query_extension_reply(xcb, cookie, nullptr));
    return reply && reply->present;
}

} // namespace

class InputIdleTimeX11::Connection
{
public:
    explicit Connection(const std::string &display);
    ~Connection() { xcb_disconnect(xcb); }

    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    [[nodiscard]] bool isUsable() const { return tellsIdleTime && xcb_connection_has_error(xcb) == 0; }
    [[nodiscard]] std::optional<std::chrono::milliseconds> idleTime();

private:
    using IdleReply = Reply<xcb_screensaver_query_info_reply_t>;
    enum class State
    {
        answered, ///< With a reply or with an error.
        waiting,
    };
    State take(unsigned int question, IdleReply &reply);

    xcb_connection_t *const xcb; ///< Never null; may be in error.
    xcb_window_t root = XCB_WINDOW_NONE;
    bool tellsIdleTime = false;
    std::optional<unsigned int> unanswered; ///< A question that nobody waits for any more.
};

InputIdleTimeX11::Connection::Connection(const std::string &display)
    : xcb(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr))
{
    if (xcb_connection_has_error(xcb) != 0)
        return;
    const auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    if (screens.rem == 0)
        return;
    root = screens.data->root;
    tellsIdleTime = has(xcb, "MIT-SCREEN-SAVER") && !x11::isGuest(xcb, root);
}

InputIdleTimeX11::Connection::State InputIdleTimeX11::Connection::take(unsigned int question, IdleReply &reply)
{
    void *answer = nullptr;
    xcb_generic_error_t *error = nullptr;
    const bool isAnswered = xcb_poll_for_reply(xcb, question, &answer, &error) != 0;
    std::free(error);
    reply.reset(static_cast<xcb_screensaver_query_info_reply_t *>(answer));
    return isAnswered ? State::answered : State::waiting;
}

std::optional<std::chrono::milliseconds> InputIdleTimeX11::Connection::idleTime()
{
    IdleReply reply;
    if (!isUsable() || (unanswered && take(*unanswered, reply) == State::waiting))
        return std::nullopt;

    const auto question = xcb_screensaver_query_info(xcb, root).sequence;
    unanswered = question;
    xcb_flush(xcb);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (take(question, reply) == State::waiting) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
        if (left <= std::chrono::milliseconds::zero())
            return std::nullopt;
        pollfd server{.fd = xcb_get_file_descriptor(xcb), .events = POLLIN, .revents = 0};
        ::poll(&server, 1, static_cast<int>(left.count()));
    }
    unanswered.reset();
    if (!reply)
        return std::nullopt;
    return std::chrono::milliseconds(reply->ms_since_user_input);
}

InputIdleTimeX11::InputIdleTimeX11(const std::string &display) : connection(std::make_unique<Connection>(display)) {}

InputIdleTimeX11::~InputIdleTimeX11() = default;

bool InputIdleTimeX11::isAvailable() const
{
    const std::lock_guard lock(mutex);
    return connection->isUsable();
}

std::optional<std::chrono::duration<double>> InputIdleTimeX11::sinceLastInput()
{
    const std::lock_guard lock(mutex);
    return connection->idleTime();
}

} // namespace orvalen
