#pragma once

#include <cstdlib>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace orvalen::x11 {

template <typename T>
struct Freed
{
    void operator()(T *memory) const { std::free(memory); }
};

/// What xcb answers with.
template <typename T>
using Reply = std::unique_ptr<T, Freed<T>>;

/// Asks for the number of a name; several questions may be on their way at once.
[[nodiscard]] xcb_intern_atom_cookie_t askForAtom(xcb_connection_t *xcb, std::string_view name);

/// The answer, which is waited for; XCB_ATOM_NONE from a dead connection.
[[nodiscard]] xcb_atom_t atom(xcb_connection_t *xcb, xcb_intern_atom_cookie_t question);

/// Question and answer in one.
[[nodiscard]] xcb_atom_t atom(xcb_connection_t *xcb, std::string_view name);

/// Whether this session is a Wayland one, by the values of WAYLAND_DISPLAY and XDG_SESSION_TYPE. An X server that lives
/// in such a session hears and shows its own windows only.
[[nodiscard]] bool isWaylandSession(std::string_view waylandDisplay, std::string_view sessionType);

/// The same, by this program's environment.
[[nodiscard]] bool isWaylandSession();

/// Whether a server is a guest in a Wayland session, by what it says of itself. Waits for up to three answers of it; a
/// dead connection is none of a guest.
[[nodiscard]] bool isGuest(xcb_connection_t *xcb, xcb_window_t root);

/// Asks beforehand for what isGuest() will ask first, so that the answers come together with others.
void prepareIsGuest(xcb_connection_t *xcb);

} // namespace orvalen::x11
