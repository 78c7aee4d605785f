#include "platform/linux/WindowActivationX11.h"

#include <QGuiApplication>
#include <QWindow>

#include <string_view>
#include <xcb/xcb.h>

#include "platform/linux/X11Session.h"

namespace orvalen {

namespace {

constexpr std::uint32_t onBehalfOfTheUser = 2; // the source of a request, as _NET_ACTIVE_WINDOW numbers them
constexpr std::string_view activeWindow = "_NET_ACTIVE_WINDOW";

} // namespace

// Window managers let a program come forward by itself only if its last input is newer than that of the program in
// front. A click in the tray of a panel is input of the panel's, so a plain request is refused.
void bringForwardForUser(QWindow &window)
{
    window.raise();
    window.requestActivate();

    const auto *const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t *const xcb = x11 ? x11->connection() : nullptr;
    if (!xcb)
        return;
    const auto name = x11::atom(xcb, activeWindow);
    const auto id = static_cast<xcb_window_t>(window.winId());
    const x11::Reply<xcb_get_geometry_reply_t> place(xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, id), nullptr));
    if (name == XCB_ATOM_NONE || !place)
        return;
    xcb_client_message_event_t request = {};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.window = id;
    request.type = name;
    request.data.data32[0] = onBehalfOfTheUser;
    request.data.data32[1] = XCB_CURRENT_TIME;
    xcb_send_event(xcb, 0, place->root, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&request));
    xcb_flush(xcb);
}

} // namespace orvalen
