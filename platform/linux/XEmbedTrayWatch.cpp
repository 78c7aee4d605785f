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
    manager = x11::atom(xcb, "MANAGER");
    selection = x11::atom(xcb, selectionName());
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
