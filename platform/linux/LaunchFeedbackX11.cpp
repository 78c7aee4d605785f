#include "platform/linux/LaunchFeedbackX11.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <system_error>
#include <thread>
#include <xcb/xcb.h>

#include "platform/linux/X11Session.h"

namespace orvalen {

namespace {

constexpr std::string_view firstPart = "_NET_STARTUP_INFO_BEGIN";
constexpr std::string_view furtherPart = "_NET_STARTUP_INFO";

std::string removal(std::string_view startupId)
{
    std::string text = "remove: ID=";
    for (const char letter : startupId) {
        if (letter == ' ' || letter == '"' || letter == '\\')
            text += '\\';
        text += letter;
    }
    return text;
}

/// As the protocol cuts it: pieces of one message's size, the last with the text's end.
void broadcast(xcb_connection_t *xcb, const xcb_screen_t &screen, const std::string &text)
{
    const auto first = x11::askForAtom(xcb, firstPart), further = x11::askForAtom(xcb, furtherPart);
    const auto speaker = xcb_generate_id(xcb); // only to tell this message from others
    xcb_create_window(xcb, 0, speaker, screen.root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0,
                      nullptr);
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = speaker;
    event.type = x11::atom(xcb, first);
    const auto later = x11::atom(xcb, further);
    for (std::size_t sent = 0; sent <= text.size(); sent += sizeof event.data) {
        std::memset(&event.data, 0, sizeof event.data);
        std::memcpy(&event.data, text.data() + sent, std::min(sizeof event.data, text.size() - sent));
        xcb_send_event(xcb, 0, screen.root, XCB_EVENT_MASK_PROPERTY_CHANGE, reinterpret_cast<const char *>(&event));
        event.type = later;
    }
    // What a client has said may be lost if it hangs up at once.
    const x11::Reply<xcb_get_input_focus_reply_t> heard(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
}

} // namespace

void endLaunchFeedback(const std::string &startupId, const std::string &display)
{
    if (startupId.empty() || x11::isWaylandSession())
        return;
    try {
        std::thread([text = removal(startupId), display] {
            xcb_connection_t *const xcb = xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr);
            if (xcb_connection_has_error(xcb) == 0)
                broadcast(xcb, *xcb_setup_roots_iterator(xcb_get_setup(xcb)).data, text);
            xcb_disconnect(xcb);
        }).detach();
    } catch (const std::system_error &) {
        // No thread to be had: the desktop ceases to show the start by itself after a while.
    }
}

} // namespace orvalen
