#include "platform/linux/X11Session.h"

#include <algorithm>
#include <array>
#include <vector>
#include <xcb/randr.h>
#include <xcb/xcbext.h>

namespace orvalen::x11 {

namespace {

// The extension by which newer guests can be told.
std::array<char, 9> guestExtensionName{"XWAYLAND"};
xcb_extension_t guestExtension{guestExtensionName.data(), 0};

bool has(xcb_connection_t *xcb, xcb_extension_t &extension)
{
    const auto *const data = xcb_get_extension_data(xcb, &extension);
    return data && data->present;
}

/// Older guests name their outputs so.
bool hasOutputNamedAsGuest(xcb_connection_t *xcb, xcb_window_t root)
{
    if (!has(xcb, xcb_randr_id))
        return false;
    const Reply<xcb_randr_get_screen_resources_current_reply_t> resources(
        xcb_randr_get_screen_resources_current_reply(xcb, xcb_randr_get_screen_resources_current(xcb, root), nullptr));
    if (!resources)
        return false;
    const auto *const outputs = xcb_randr_get_screen_resources_current_outputs(resources.get());
    const auto count = xcb_randr_get_screen_resources_current_outputs_length(resources.get());
    std::vector<xcb_randr_get_output_info_cookie_t> questions;
    std::transform(outputs, outputs + count, std::back_inserter(questions), [&](xcb_randr_output_t output) {
        return xcb_randr_get_output_info(xcb, output, resources->config_timestamp);
    });
    bool isFound = false;
    for (const auto question : questions) {
        const Reply<xcb_randr_get_output_info_reply_t> info(xcb_randr_get_output_info_reply(xcb, question, nullptr));
        if (!info)
            continue;
        const auto *const name = reinterpret_cast<const char *>(xcb_randr_get_output_info_name(info.get()));
        const auto length = xcb_randr_get_output_info_name_length(info.get());
        isFound = isFound || std::string_view(name, static_cast<std::size_t>(length)).starts_with("XWAYLAND");
    }
    return isFound;
}

std::string_view variable(const char *name)
{
    const char *const value = std::getenv(name);
    return value ? value : "";
}

} // namespace

xcb_intern_atom_cookie_t askForAtom(xcb_connection_t *xcb, std::string_view name)
{
    return xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.data());
}

xcb_atom_t atom(xcb_connection_t *xcb, xcb_intern_atom_cookie_t question)
{
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb, question, nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_atom_t atom(xcb_connection_t *xcb, std::string_view name)
{
    return atom(xcb, askForAtom(xcb, name));
}

bool isWaylandSession(std::string_view waylandDisplay, std::string_view sessionType)
{
    return !waylandDisplay.empty() || sessionType == "wayland";
}

bool isWaylandSession()
{
    return isWaylandSession(variable("WAYLAND_DISPLAY"), variable("XDG_SESSION_TYPE"));
}

void prepareIsGuest(xcb_connection_t *xcb)
{
    xcb_prefetch_extension_data(xcb, &guestExtension);
    xcb_prefetch_extension_data(xcb, &xcb_randr_id);
}

bool isGuest(xcb_connection_t *xcb, xcb_window_t root)
{
    prepareIsGuest(xcb);
    return has(xcb, guestExtension) || hasOutputNamedAsGuest(xcb, root);
}

} // namespace orvalen::x11
