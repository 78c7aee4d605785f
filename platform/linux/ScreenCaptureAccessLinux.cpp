#include "platform/linux/ScreenCaptureAccessLinux.h"

#include <cstdlib>
#include <string_view>

#include "platform/linux/X11Session.h"
#include "platform/posix/SearchPath.h"

namespace orvalen {

namespace {

bool isOnSearchPath(std::string_view name)
{
    const char *const value = std::getenv("PATH");
    return search_path::find(name, value ? value : "", search_path::RelativeFolders::follow).has_value();
}

bool showsItsScreen(const std::string &display)
{
    xcb_connection_t *const xcb = xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr);
    const bool isConnected = xcb_connection_has_error(xcb) == 0;
    const bool isOwn = isConnected && !x11::isGuest(xcb, xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root) &&
                       xcb_connection_has_error(xcb) == 0;
    xcb_disconnect(xcb);
    return isOwn;
}

} // namespace

ScreenCaptureAccessLinux::ScreenCaptureAccessLinux(const std::string &display, std::chrono::nanoseconds limit)
    : hasServer([display] { return showsItsScreen(display); }, limit)
{
}

bool ScreenCaptureAccessLinux::isGranted()
{
    return isOnSearchPath("screencapture") || (!x11::isWaylandSession() && hasServer.ask().value_or(false));
}

} // namespace orvalen
