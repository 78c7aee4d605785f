#include "tests/screencapture/Screen.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <sys/uio.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

namespace orvalen::test {

namespace {

template <typename Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

} // namespace

Screen::Screen(const std::string &display) : xcb(xcb_connect(display.c_str(), nullptr))
{
    if (xcb_connection_has_error(xcb) != 0)
        throw std::runtime_error("no X server to draw on");
    screen = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data;
    context = xcb_generate_id(xcb);
    const std::uint32_t everywhere = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
    xcb_create_gc(xcb, context, screen->root, XCB_GC_SUBWINDOW_MODE, &everywhere);
    setPointer(1, 0, 0, 0, 0);
}

Screen::~Screen()
{
    xcb_disconnect(xcb);
}

void Screen::sync()
{
    if (!owned(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr)))
        throw std::runtime_error("the X server has gone");
}

void Screen::fill(const Rectangle &area, std::uint32_t rgb)
{
    xcb_change_gc(xcb, context, XCB_GC_FOREGROUND, &rgb);
    const xcb_rectangle_t rectangle{static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                                    static_cast<std::uint16_t>(area.width), static_cast<std::uint16_t>(area.height)};
    xcb_poly_fill_rectangle(xcb, screen->root, context, 1, &rectangle);
    sync();
}

void Screen::paint(const Rectangle &area, const std::vector<std::uint8_t> &pixels)
{
    constexpr int rowsAtOnce = 16; // a request has a greatest length
    for (int y = 0; y < area.height; y += rowsAtOnce) {
        const int rows = std::min(rowsAtOnce, area.height - y);
        xcb_put_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, context, static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(rows), static_cast<std::int16_t>(area.x),
                      static_cast<std::int16_t>(area.y + y), 0, screen->root_depth,
                      static_cast<std::uint32_t>(area.width * rows * 4),
                      pixels.data() + static_cast<std::size_t>(area.width * y) * 4);
    }
    sync();
}

void Screen::setMonitor(const std::string &name, const Rectangle &area, bool isPrimary, bool isReal)
{
    const auto atom = owned(xcb_intern_atom_reply(
        xcb, xcb_intern_atom(xcb, false, static_cast<std::uint16_t>(name.size()), name.c_str()), nullptr));
    const auto resources = owned(xcb_randr_get_screen_resources_current_reply(
        xcb, xcb_randr_get_screen_resources_current(xcb, screen->root), nullptr));
    if (!atom || !resources)
        throw std::runtime_error("no monitors on this X server");
    // xcb has a function for it, but one that ends the connection.
    std::vector<std::uint32_t> request(2 + sizeof(xcb_randr_monitor_info_t) / 4 + (isReal ? 1 : 0));
    request[1] = screen->root;
    auto &info = *reinterpret_cast<xcb_randr_monitor_info_t *>(request.data() + 2);
    info.name = atom->atom;
    info.primary = isPrimary;
    info.nOutput = isReal ? 1 : 0;
    info.x = static_cast<std::int16_t>(area.x);
    info.y = static_cast<std::int16_t>(area.y);
    info.width = static_cast<std::uint16_t>(area.width);
    info.height = static_cast<std::uint16_t>(area.height);
    info.width_in_millimeters = info.height_in_millimeters = 200;
    if (isReal)
        request.back() = *xcb_randr_get_screen_resources_current_outputs(resources.get());
    std::array<iovec, 3> parts{};
    parts[2] = {request.data(), request.size() * sizeof request[0]};
    const xcb_protocol_request_t protocol{1, &xcb_randr_id, XCB_RANDR_SET_MONITOR, 1};
    xcb_send_request(xcb, 0, parts.data() + 2, &protocol);
    sync();
}

void Screen::showPointer(int side, int hotSpotX, int hotSpotY, std::uint32_t rgb)
{
    setPointer(side, side, hotSpotX, hotSpotY, rgb);
}

void Screen::setPointer(int side, int filled, int hotSpotX, int hotSpotY, std::uint32_t rgb)
{
    const auto size = static_cast<std::uint16_t>(side);
    const auto shape = xcb_generate_id(xcb);
    xcb_create_pixmap(xcb, 1, shape, screen->root, size, size);
    const auto pen = xcb_generate_id(xcb);
    const std::uint32_t zero = 0;
    const std::uint32_t one = 1;
    xcb_create_gc(xcb, pen, shape, XCB_GC_FOREGROUND, &zero);
    const xcb_rectangle_t whole{0, 0, size, size};
    xcb_poly_fill_rectangle(xcb, shape, pen, 1, &whole);
    const xcb_rectangle_t part{0, 0, static_cast<std::uint16_t>(filled), static_cast<std::uint16_t>(filled)};
    xcb_change_gc(xcb, pen, XCB_GC_FOREGROUND, &one);
    xcb_poly_fill_rectangle(xcb, shape, pen, 1, &part);
    const auto cursor = xcb_generate_id(xcb);
    const auto channel = [rgb](int shift) { return static_cast<std::uint16_t>((rgb >> shift & 0xff) * 0x101); };
    xcb_create_cursor(xcb, cursor, shape, shape, channel(16), channel(8), channel(0), 0, 0, 0,
                      static_cast<std::uint16_t>(hotSpotX), static_cast<std::uint16_t>(hotSpotY));
    xcb_change_window_attributes(xcb, screen->root, XCB_CW_CURSOR, &cursor);
    sync();
}

void Screen::movePointer(int x, int y)
{
    xcb_warp_pointer(xcb, XCB_NONE, screen->root, 0, 0, 0, 0, static_cast<std::int16_t>(x),
                     static_cast<std::int16_t>(y));
    sync();
}

void Screen::startScreenSaver()
{
    saveScreen(XCB_BLANKING_NOT_PREFERRED);
}

void Screen::goDark()
{
    saveScreen(XCB_BLANKING_PREFERRED);
}

void Screen::saveScreen(std::uint8_t howToBlank)
{
    constexpr std::int16_t seconds = 600;
    xcb_set_screen_saver(xcb, seconds, seconds, howToBlank, XCB_EXPOSURES_ALLOWED);
    xcb_force_screen_saver(xcb, XCB_SCREEN_SAVER_ACTIVE);
    sync();
}

} // namespace orvalen::test
