#include "platform/linux/KeyMapX11.h"

#include <X11/keysym.h>
#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/HotKeys.h"
#include "platform/linux/X11Session.h"

namespace orvalen {

namespace {

using x11::Reply;

struct Letter
{
    std::uint32_t keyCode;       ///< Carbon's.
    xcb_keysym_t lower, upper;   ///< What it writes.
    xcb_keycode_t americanPlace; ///< The key's number on every PC keyboard.
};

constexpr std::array letters{
    Letter{13, XK_w, XK_W, 25},
    Letter{46, XK_m, XK_M, 58},
};

} // namespace

std::optional<KeyMapX11> KeyMapX11::read(xcb_connection_t *xcb)
{
    const auto *const setup = xcb_get_setup(xcb);
    const auto first = setup->min_keycode;
    const auto symbolsAsked =
        xcb_get_keyboard_mapping(xcb, first, static_cast<std::uint8_t>(setup->max_keycode - first + 1));
    const auto modifiersAsked = xcb_get_modifier_mapping(xcb);
    const Reply<xcb_get_keyboard_mapping_reply_t> symbols(xcb_get_keyboard_mapping_reply(xcb, symbolsAsked, nullptr));
    const Reply<xcb_get_modifier_mapping_reply_t> modifiers(
        xcb_get_modifier_mapping_reply(xcb, modifiersAsked, nullptr));
    if (!symbols || !modifiers)
        return std::nullopt;
    const auto *const symbol = xcb_get_keyboard_mapping_keysyms(symbols.get());
    const auto *const key = xcb_get_modifier_mapping_keycodes(modifiers.get());
    return KeyMapX11(first, symbols->keysyms_per_keycode,
                     {symbol, symbol + xcb_get_keyboard_mapping_keysyms_length(symbols.get())},
                     {key, key + xcb_get_modifier_mapping_keycodes_length(modifiers.get())});
}

KeyMapX11::KeyMapX11(xcb_keycode_t firstKey, std::size_t symbolsPerKey, std::vector<xcb_keysym_t> symbols,
                     const std::vector<xcb_keycode_t> &modifierKeys)
    : firstKey(firstKey), symbolsPerKey(symbolsPerKey), symbols(std::move(symbols))
{
    const auto each = modifierKeys.size() / this->modifierKeys.size();
    for (std::size_t i = 0; i < each * this->modifierKeys.size(); ++i) {
        if (modifierKeys[i] != 0)
            this->modifierKeys[i / each].push_back(modifierKeys[i]);
    }
}

xcb_keysym_t KeyMapX11::symbol(xcb_keycode_t key, std::size_t column) const
{
    const auto index = static_cast<std::size_t>(key - firstKey) * symbolsPerKey + column;
    return key >= firstKey && index < symbols.size() ? symbols[index] : XCB_NO_SYMBOL;
}

bool KeyMapX11::has(xcb_keycode_t key, xcb_keysym_t wanted) const
{
    for (std::size_t column = 0; column < symbolsPerKey; ++column) {
        if (symbol(key, column) == wanted)
            return true;
    }
    return false;
}

std::vector<xcb_keycode_t> KeyMapX11::keys(std::uint32_t keyCode, unsigned int group) const
{
    const auto *const letter =
        std::find_if(letters.begin(), letters.end(), [&](const Letter &each) { return each.keyCode == keyCode; });
    if (letter == letters.end())
        return {};
    // The server puts the first two groups into two columns each; where the others begin is different for each key.
    const std::size_t begin = group < 2 ? std::size_t{2} * group : 4;
    const std::size_t end = group < 2 ? begin + 2 : symbolsPerKey;
    auto found = keysWith(letter->lower, letter->upper, begin, end);
    for (std::size_t column = 0; found.empty() && column < symbolsPerKey; ++column)
        found = keysWith(letter->lower, letter->upper, column, column + 1);
    return found.empty() ? std::vector{letter->americanPlace} : found;
}

/// Those that have one of two symbols in the columns from `begin` to before `end`.
std::vector<xcb_keycode_t> KeyMapX11::keysWith(xcb_keysym_t lower, xcb_keysym_t upper, std::size_t begin,
                                               std::size_t end) const
{
    std::vector<xcb_keycode_t> found;
    for (std::size_t i = 0; symbolsPerKey > 0 && i < symbols.size() / symbolsPerKey; ++i) {
        const auto key = static_cast<xcb_keycode_t>(firstKey + i);
        bool hasIt = false;
        for (auto column = begin; column < std::min(end, symbolsPerKey); ++column)
            hasIt = hasIt || symbol(key, column) == lower || symbol(key, column) == upper;
        if (hasIt)
            found.push_back(key);
    }
    return found;
}

/// The modifier that the left key is, else the right one; 0: neither is one.
std::uint16_t KeyMapX11::modifierOf(xcb_keysym_t left, xcb_keysym_t right) const
{
    for (const auto wanted : {left, right}) {
        for (std::size_t bit = 0; bit < modifierKeys.size(); ++bit) {
            const auto &keys = modifierKeys[bit];
            if (std::any_of(keys.begin(), keys.end(), [&](xcb_keycode_t key) { return has(key, wanted); }))
                return static_cast<std::uint16_t>(1U << bit);
        }
    }
    return 0;
}

std::optional<std::uint16_t> KeyMapX11::modifiers(std::uint32_t sum) const
{
    const auto super = modifierOf(XK_Super_L, XK_Super_R);
    const auto alt = modifierOf(XK_Alt_L, XK_Alt_R);
    const bool wantsSuper = (sum & HotKey::commandKey) != 0;
    const bool wantsAlt = (sum & HotKey::optionKey) != 0;
    const bool knowsNothingElse = (sum & ~(HotKey::commandKey | HotKey::optionKey)) == 0;
    if (!knowsNothingElse || (wantsSuper && super == 0) || (wantsAlt && alt == 0) || super == alt)
        return std::nullopt;
    return static_cast<std::uint16_t>((wantsSuper ? super : 0U) | (wantsAlt ? alt : 0U));
}

std::vector<std::uint16_t> KeyMapX11::lockStates() const
{
    std::vector<std::uint16_t> states{0};
    for (const auto lock : {static_cast<std::uint16_t>(XCB_MOD_MASK_LOCK), modifierOf(XK_Num_Lock, XK_Num_Lock),
                            modifierOf(XK_Scroll_Lock, XK_Scroll_Lock)}) {
        if (std::find(states.begin(), states.end(), lock) != states.end())
            continue; // no modifier here, or the same one as another lock
        const auto without = states;
        std::transform(without.begin(), without.end(), std::back_inserter(states),
                       [&](std::uint16_t state) { return static_cast<std::uint16_t>(state | lock); });
    }
    return states;
}

} // namespace orvalen
