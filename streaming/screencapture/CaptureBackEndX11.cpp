#include "streaming/screencapture/CaptureBackEndX11.h"

#include <xcb/randr.h>
#include <xcb/screensaver.h>
#include <xcb/shm.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include "platform/linux/X11Session.h"
#include "streaming/screencapture/CaptureError.h"
#include "streaming/screencapture/PictureX11.h"

namespace orvalen {

using x11::Reply;

/// A connection, and what is asked over it once, in few turns.
class CaptureBackEndX11::Server
{
public:
    explicit Server(const std::string &name);
    ~Server() { xcb_disconnect(xcb); }

    Server(const Server &) = delete;
    Server &operator=(const Server &) = delete;

    [[nodiscard]] bool isConnected() const { return xcb_connection_has_error(xcb) == 0; }
    [[nodiscard]] std::optional<PixelLayout> layout() const;

    /// Something covers the screen. A display that is only dark for want of input does not: all windows are there.
    [[nodiscard]] bool hasLock() const
    {
        return screenSaver && screenSaver->state == XCB_SCREENSAVER_STATE_ON &&
               screenSaver->kind != XCB_SCREENSAVER_KIND_BLANKED;
    }

    xcb_connection_t *const xcb; ///< Never null; may be in error.
    const xcb_screen_t *screen = nullptr;
    bool isGuest = false;
    Reply<xcb_randr_get_monitors_reply_t> monitors;
    Reply<xcb_screensaver_query_info_reply_t> screenSaver;

private:
    [[nodiscard]] bool has(xcb_extension_t &extension) const
    {
        const auto *const data = xcb_get_extension_data(xcb, &extension);
        return data && data->present;
    }

    int screenNumber = 0; ///< The one that the server's name asks for.
};

CaptureBackEndX11::Server::Server(const std::string &name)
    : xcb(xcb_connect(name.empty() ? nullptr : name.c_str(), &screenNumber))
{
    if (!isConnected())
        return;
    for (auto *const extension : {&xcb_randr_id, &xcb_screensaver_id, &xcb_shm_id, &xcb_xfixes_id})
        xcb_prefetch_extension_data(xcb, extension);
    x11::prepareIsGuest(xcb);

    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    for (int i = 0; i < screenNumber && screens.rem > 1; ++i)
        xcb_screen_next(&screens);
    screen = screens.data;

    if (has(xcb_xfixes_id)) // it answers those alone who have told their version
        xcb_discard_reply(xcb, xcb_xfixes_query_version(xcb, 4, 0).sequence);
    xcb_screensaver_query_info_cookie_t saverQuestion{};
    if (has(xcb_screensaver_id))
        saverQuestion = xcb_screensaver_query_info(xcb, screen->root);
    xcb_randr_get_monitors_cookie_t monitorsQuestion{};
    if (has(xcb_randr_id)) {
        xcb_discard_reply(xcb, xcb_randr_query_version(xcb, 1, 5).sequence);
        monitorsQuestion = xcb_randr_get_monitors(xcb, screen->root, true);
    }
    isGuest = x11::isGuest(xcb, screen->root);
    if (has(xcb_screensaver_id))
        screenSaver.reset(xcb_screensaver_query_info_reply(xcb, saverQuestion, nullptr));
    if (has(xcb_randr_id))
        monitors.reset(xcb_randr_get_monitors_reply(xcb, monitorsQuestion, nullptr));
}

std::optional<PixelLayout> CaptureBackEndX11::Server::layout() const
{
    const auto *const setup = xcb_get_setup(xcb);
    PixelDescription description;
    description.order = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST ? ByteOrder::leastSignificantFirst
                                                                             : ByteOrder::mostSignificantFirst;
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0; xcb_format_next(&formats)) {
        if (formats.data->depth == screen->root_depth)
            description.bitsPerPixel = formats.data->bits_per_pixel;
    }
    for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem > 0; xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0; xcb_visualtype_next(&visuals)) {
            const auto &visual = *visuals.data;
            if (visual.visual_id == screen->root_visual && visual._class == XCB_VISUAL_CLASS_TRUE_COLOR) {
                description.redMask = visual.red_mask;
                description.greenMask = visual.green_mask;
                description.blueMask = visual.blue_mask;
            }
        }
    }
    return pixelLayout(description);
}

CaptureBackEndX11::CaptureBackEndX11(std::string display) : name(std::move(display)) {}

CaptureBackEndX11::~CaptureBackEndX11() = default;

std::string CaptureBackEndX11::obstacle()
{
    if (x11::isWaylandSession())
        return "This is a Wayland session; what an X server sees of it is black.";
    if (!server)
        server = std::make_unique<Server>(name);
    if (!server->isConnected())
        return "There is no display server to be reached.";
    if (server->isGuest)
        return "The display server is a guest in a Wayland session; what it sees of it is black.";
    return {};
}

std::vector<Display> CaptureBackEndX11::displays()
{
    const Rectangle all{0, 0, server->screen->width_in_pixels, server->screen->height_in_pixels};
    std::vector<Display> displays;
    if (server->monitors) {
        auto monitors = xcb_randr_get_monitors_monitors_iterator(server->monitors.get());
        for (; monitors.rem > 0; xcb_randr_monitor_info_next(&monitors)) {
            const auto &monitor = *monitors.data;
            const auto area = intersection({monitor.x, monitor.y, monitor.width, monitor.height}, all);
            if (!area.isEmpty())
                displays.push_back({area, monitor.primary != 0});
        }
    }
    if (displays.empty())
        displays.push_back({all, true});
    return displays;
}

std::unique_ptr<Picture> CaptureBackEndX11::open(const Display &display, unsigned lanes)
{
    if (server->hasLock())
        throw CaptureError("The session is locked, or its screen saver is on.");
    const auto layout = server->layout();
    if (!layout)
        throw CaptureError("The screen's pixels are not of 24 bits in four bytes.");
    return std::make_unique<PictureX11>(server->xcb, server->screen->root, display.area, *layout, lanes);
}

} // namespace orvalen
