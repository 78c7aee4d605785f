#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

namespace orvalen {

/// Which keys and modifiers an X server's keyboard has at the moment, in the words of HotKey.
class KeyMapX11
{
public:
    /// What the server says of its keyboard; std::nullopt without an answer. Waits for it.
    [[nodiscard]] static std::optional<KeyMapX11> read(xcb_connection_t *xcb);

    /// `symbols`: those of each key in turn, `symbolsPerKey` each, from the key `firstKey` on. `modifierKeys`: the keys
    /// of each of the eight modifiers in turn, as many for each; 0: no key.
    KeyMapX11(xcb_keycode_t firstKey, std::size_t symbolsPerKey, std::vector<xcb_keysym_t> symbols,
              const std::vector<xcb_keycode_t> &modifierKeys);

    /// A keyboard has up to so many layouts, one of which is in effect.
    static constexpr unsigned int groups = 4;

    /// The keys for one of HotKey's key codes while the layout `group` (from 0 on) is in effect: those that write its
    /// letter. If that layout has it nowhere, those of the first that has it; where no key writes it, the one in its
    /// place. Empty: not a key we know.
    [[nodiscard]] std::vector<xcb_keycode_t> keys(std::uint32_t keyCode, unsigned int group = 0) const;

    /// The server's mask for a sum of HotKey's modifiers. std::nullopt: the keyboard has no such modifier, or cannot
    /// tell one from the other.
    [[nodiscard]] std::optional<std::uint16_t> modifiers(std::uint32_t sum) const;

    /// The masks for every on and off of Caps, Num and Scroll Lock, as far as they are modifiers here.
    [[nodiscard]] std::vector<std::uint16_t> lockStates() const;

private:
    [[nodiscard]] xcb_keysym_t symbol(xcb_keycode_t key, std::size_t column) const;
    [[nodiscard]] bool has(xcb_keycode_t key, xcb_keysym_t wanted) const;
    [[nodiscard]] std::vector<xcb_keycode_t> keysWith(xcb_keysym_t lower, xcb_keysym_t upper, std::size_t begin,
                                                      std::size_t end) const;
    [[nodiscard]] std::uint16_t modifierOf(xcb_keysym_t left, xcb_keysym_t right) const;

    xcb_keycode_t firstKey;
    std::size_t symbolsPerKey;
    std::vector<xcb_keysym_t> symbols;
    std::array<std::vector<xcb_keycode_t>, 8> modifierKeys; ///< By the number of the modifier's bit.
};

} // namespace orvalen
