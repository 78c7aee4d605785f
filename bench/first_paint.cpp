// first_paint COMMAND...     Prints the milliseconds from starting the command to its first painted window.
//
// Wants an X display without a window manager, so that the command's window is a child of the root window. "Painted" is
// the moment at which a pixel inside the biggest new window no longer has the root's colour. The command is ended by
// SIGTERM.

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <thread>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto limit = 20s;
constexpr int smallestWidth = 400;

template <typename T>
std::unique_ptr<T, decltype(&std::free)> owned(T *reply)
{
    return {reply, &std::free};
}

/// The colour in the middle of the screen, where every window of a program of ours lies.
std::optional<std::uint32_t> colourAt(xcb_connection_t *display, xcb_window_t root, int x, int y)
{
    const auto cookie = xcb_get_image(display, XCB_IMAGE_FORMAT_Z_PIXMAP, root, static_cast<std::int16_t>(x),
                                      static_cast<std::int16_t>(y), 1, 1, ~0u);
    const auto image = owned(xcb_get_image_reply(display, cookie, nullptr));
    if (!image || xcb_get_image_data_length(image.get()) < 4)
        return std::nullopt;
    std::uint32_t colour = 0;
    std::memcpy(&colour, xcb_get_image_data(image.get()), sizeof colour);
    return colour & 0xffffff;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 2) {
        std::fputs("first_paint COMMAND...\n", stderr);
        return 64;
    }
    xcb_connection_t *display = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(display)) {
        std::fputs("first_paint: no X display\n", stderr);
        return 69;
    }
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(display)).data->root;
    const std::uint32_t eventMask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(display, root, XCB_CW_EVENT_MASK, &eventMask);
    xcb_flush(display);

    const auto start = Clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, argv[1], nullptr, nullptr, argv + 1, environ) != 0) {
        std::fputs("first_paint: the command does not start\n", stderr);
        return 69;
    }

    std::optional<double> milliseconds;
    std::optional<std::uint32_t> before;
    int x = 0;
    int y = 0;
    while (!milliseconds && Clock::now() - start < limit) {
        while (xcb_generic_event_t *event = xcb_poll_for_event(display)) {
            const auto kept = owned(event);
            if ((event->response_type & 0x7f) != XCB_MAP_NOTIFY)
                continue;
            const auto window = reinterpret_cast<xcb_map_notify_event_t *>(event)->window;
            const auto place = owned(xcb_get_geometry_reply(display, xcb_get_geometry(display, window), nullptr));
            if (place && place->width >= smallestWidth && !before) {
                x = place->x + place->width / 2;
                y = place->y + place->height - 20; // plain window in both programs
                before = 0;                        // the root's colour of a bare server: black
            }
        }
        if (before && colourAt(display, root, x, y).value_or(0) != *before)
            milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        else
            std::this_thread::sleep_for(500us);
    }

    kill(child, SIGTERM);
    int status = 0;
    waitpid(child, &status, 0);
    xcb_disconnect(display);
    if (!milliseconds) {
        std::fputs("first_paint: nothing was painted\n", stderr);
        return 70;
    }
    std::printf("%.1f\n", *milliseconds);
    return 0;
}
