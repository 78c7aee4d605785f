#include "platform/linux/XEmbedTrayWatch.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstring>
#include <string>
#include <utility>
#include <xcb/xcb.h>

#include "platform/linux/X11Session.h"

namespace orvalen {

namespace {

std::uint32_t atom(xcb_connection_t *xcb, const std::string &name)
{
    const auto cookie = xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
    const x11::Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb, cookie, nullptr));
    return reply ? reply->atom : std::uint32_t{XCB_ATOM_NONE};
}

std::string selectionName()
{
    char *host = nullptr;
    int display = 0;
    int screen = 0;
    if (xcb_parse_display(nullptr, &host, &display, &screen) != 0)
        std::free(host);
    return "_NET_SYSTEM_TRAY_S" + std::to_string(screen);
}

} // namespace

XEmbedTrayWatch::XEmbedTrayWatch(std::function<void()> changed) : changed(std::move(changed))
{
    const auto *const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb = x11 ? x11->connection() : nullptr;
    if (!xcb)
        return;
    manager = atom(xcb, "MANAGER");
    selection = atom(xcb, selectionName());
    // Qt listens to the root window already, so the announcement comes by.
    qApp->installNativeEventFilter(this);
}

XEmbedTrayWatch::~XEmbedTrayWatch()
{
    if (xcb)
        qApp->removeNativeEventFilter(this);
}

bool XEmbedTrayWatch::isThere() const
{
    if (!xcb)
        return false;
    const x11::Reply<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool XEmbedTrayWatch::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *const event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return false;
    xcb_client_message_event_t announcement = {};
    std::memcpy(&announcement, event, sizeof announcement);
    if (announcement.type == manager && announcement.data.data32[1] == selection)
        changed();
    return false;
}

} // namespace orvalen
