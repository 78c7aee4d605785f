#pragma once

#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace orvalen::x11 {

struct XkbClient
{
    std::uint8_t keyboardEvent; ///< Any event of this number announces a change of the keyboard.
    bool releasesOnce;          ///< A key that is held down releases in the end only, not before each repetition.
};

/// Makes a connection one that knows the X server's keyboard extension, which changes three things: every change of the
/// keyboard is announced; the state of a grabbed key's event names the layout in effect; and if the server can,
/// repetitions have no releases. Without an answer (or the extension) nothing changes. Waits for up to three answers of
/// the server.
[[nodiscard]] std::optional<XkbClient> becomeXkbClient(xcb_connection_t *xcb);

} // namespace orvalen::x11
