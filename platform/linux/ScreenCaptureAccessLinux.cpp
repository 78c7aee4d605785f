#include "platform/linux/ScreenCaptureAccessLinux.h"

#include <cstdlib>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/X11Session.h"

namespace orvalen {

namespace {

bool isProgram(const std::string &path)
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

bool isOnSearchPath(std::string_view name)
{
    const char *const value = std::getenv("PATH");
    for (std::string_view rest(value ? value : ""); !rest.empty();) {
        const auto end = rest.find(':');
        std::string folder(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (isProgram(folder.append(folder.empty() ? "./" : "/").append(name)))
            return true;
    }
    return false;
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
