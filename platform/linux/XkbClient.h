#pragma once

#include <cstdint>
#include <optional>
#include <xcb/xcb.h>

namespace orvalen::x11 {

/// Makes a connection one that knows the X server's keyboard extension, which changes two things: a key that is held
/// down releases once, in the end, instead of before each repetition; and every change of the keyboard is announced, by
/// any event of the returned number. Without an answer (or the extension) nothing changes. Waits for up to three
/// answers of the server.
[[nodiscard]] std::optional<std::uint8_t> becomeXkbClient(xcb_connection_t *xcb);

} // namespace orvalen::x11
