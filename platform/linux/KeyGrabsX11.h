#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>
#include <xcb/xcb.h>

#include "platform/HotKeys.h"
#include "platform/linux/HeldKeysX11.h"
#include "platform/linux/KeyMapX11.h"

namespace orvalen {

/// Keys grabbed on an X server over a connection of its own, kept on the same letters when the keyboard changes. Its
/// operations wait for the server, however long that takes. One thread at a time.
class KeyGrabsX11
{
public:
    /// Connects to `display`, or to the one that the environment names where it is empty.
    explicit KeyGrabsX11(const std::string &display);
    ~KeyGrabsX11(); ///< The server gives all keys back.

    KeyGrabsX11(const KeyGrabsX11 &) = delete;
    KeyGrabsX11 &operator=(const KeyGrabsX11 &) = delete;

    /// False without a server, after the connection has died, and on a server that is itself a guest in a Wayland
    /// session: it hears only what is typed into its own windows.
    [[nodiscard]] bool isUsable() const { return canGrab && xcb_connection_has_error(xcb) == 0; }

    /// Readable when there may be something to take.
    [[nodiscard]] int descriptor() const { return xcb_get_file_descriptor(xcb); }

    /// Grabs a key in every layout and state of the locks, or in none: false if one of them is somebody else's, or
    /// there is no such key. `number` is for remove() and must be new.
    [[nodiscard]] bool add(std::uint64_t number, const HotKey &key);

    /// Gives it back. Nothing happens if that number was not granted.
    void remove(std::uint64_t number);

    /// The presses that have come since the last time, one for however long a key is held.
    [[nodiscard]] std::vector<HotKeyId> takePresses();

    /// Whether a release is awaited: should it be long in coming, checkHeldKeys() is due now and then.
    [[nodiscard]] bool isKeyHeld() const { return heldKeys.isAny(); }

    /// Asks which keys are still down: a release may have got lost, and its key would never count again.
    void checkHeldKeys();

private:
    struct Grab
    {
        xcb_keycode_t key;
        std::uint16_t modifiers; ///< Exactly these, locks included.
        friend bool operator<(const Grab &a, const Grab &b)
        {
            return std::tie(a.key, a.modifiers) < std::tie(b.key, b.modifiers);
        }
    };
    using Grabs = std::set<Grab>;
    struct Places
    {
        Grabs grabs;                                 ///< In all layouts of the keyboard together.
        std::array<Grabs, KeyMapX11::groups> counts; ///< The part that is the key in each of them.
    };
    struct Wish
    {
        std::uint64_t number = 0;
        HotKey key;
        Places held; ///< Empty: not to be had on the keyboard as it is.
    };

    [[nodiscard]] std::optional<Places> placesOf(const HotKey &key) const;
    [[nodiscard]] bool grab(const Grabs &grabs);
    void ungrab(const Grabs &grabs);
    void followKeyboard();
    void press(const xcb_key_press_event_t &event, std::vector<HotKeyId> &presses);

    xcb_connection_t *const xcb; ///< Never null; may be in error.
    bool canGrab = false;
    std::vector<xcb_window_t> roots;
    std::optional<std::uint8_t> keyboardEvent;
    std::vector<Wish> wishes;
    HeldKeysX11 heldKeys{true};
};

} // namespace orvalen
