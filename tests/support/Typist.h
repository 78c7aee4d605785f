#pragma once

#include <cstdint>
#include <string>
#include <vector>
#include <xcb/xcb.h>

namespace orvalen::test {

/// Somebody at the keyboard of an X server. Keys are named by the first symbol on them, X11/keysym.h's.
class Typist
{
public:
    /// Throws std::runtime_error where the server takes no typing.
    explicit Typist(const std::string &display);
    ~Typist();

    Typist(const Typist &) = delete;
    Typist &operator=(const Typist &) = delete;

    /// The server knows of it when these return.
    void press(xcb_keysym_t key) const { fake(XCB_KEY_PRESS, keyOf(key)); }
    void release(xcb_keysym_t key) const { fake(XCB_KEY_RELEASE, keyOf(key)); }

    /// Presses them in this order, and releases them the other way round.
    void type(const std::vector<xcb_keysym_t> &keys) const;

    /// The same for one key by its number, with others held.
    void typeKey(const std::vector<xcb_keysym_t> &held, xcb_keycode_t key) const;

    /// On the keyboard as it is now; throws std::runtime_error if it is not there.
    [[nodiscard]] xcb_keycode_t keyOf(xcb_keysym_t symbol) const;

    /// The modifiers that are in effect.
    [[nodiscard]] std::uint16_t modifiers() const { return state() & 0xff; }

    /// Which of the keyboard's layouts is in effect, from 0 on.
    [[nodiscard]] int group() const { return state() >> 13 & 3; }

private:
    [[nodiscard]] std::uint16_t state() const;
    void fake(std::uint8_t event, xcb_keycode_t key) const;

    xcb_connection_t *const xcb;
    xcb_window_t root = XCB_WINDOW_NONE;
};

} // namespace orvalen::test
