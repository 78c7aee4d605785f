#include "platform/linux/KeyGrabsX11.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/linux/X11Session.h"
#include "platform/linux/XkbClient.h"

namespace orvalen {

namespace {

using x11::Reply;

// Of an event's state. Between them are pointer buttons.
constexpr std::uint16_t allModifiers = 0xff;
constexpr unsigned int groupShift = 13;
constexpr unsigned int groupMask = 3;

template <typename Set>
Set without(const Set &set, const Set &removed)
{
    Set rest;
    std::set_difference(set.begin(), set.end(), removed.begin(), removed.end(), std::inserter(rest, rest.end()));
    return rest;
}

} // namespace

KeyGrabsX11::KeyGrabsX11(const std::string &display)
    : xcb(xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr))
{
    if (xcb_connection_has_error(xcb) != 0)
        return;
    for (auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb)); screens.rem > 0; xcb_screen_next(&screens))
        roots.push_back(screens.data->root);
    canGrab = !roots.empty() && !x11::isGuest(xcb, roots.front());
    if (!canGrab)
        return;
    if (const auto client = x11::becomeXkbClient(xcb)) {
        keyboardEvent = client->keyboardEvent;
        heldKeys = HeldKeysX11(!client->releasesOnce);
    }
}

KeyGrabsX11::~KeyGrabsX11()
{
    xcb_disconnect(xcb);
}

bool KeyGrabsX11::add(std::uint64_t number, const HotKey &key)
{
    auto places = placesOf(key);
    if (!places || places->grabs.empty())
        return false;
    const bool isOurs = std::any_of(wishes.begin(), wishes.end(), [&](const Wish &wish) {
        return without(wish.held.grabs, places->grabs).size() != wish.held.grabs.size();
    });
    if (isOurs || !grab(places->grabs))
        return false;
    wishes.push_back({number, key, std::move(*places)});
    return true;
}

void KeyGrabsX11::remove(std::uint64_t number)
{
    const auto wish =
        std::find_if(wishes.begin(), wishes.end(), [&](const Wish &each) { return each.number == number; });
    if (wish == wishes.end())
        return;
    ungrab(wish->held.grabs);
    wishes.erase(wish);
}

/// What makes up a key on the keyboard as it is. std::nullopt: the server does not say.
std::optional<KeyGrabsX11::Places> KeyGrabsX11::placesOf(const HotKey &key) const
{
    const auto map = KeyMapX11::read(xcb);
    if (!map)
        return std::nullopt;
    Places places;
    const auto modifiers = map->modifiers(key.modifiers);
    for (unsigned int group = 0; modifiers && group < KeyMapX11::groups; ++group) {
        auto &counts = places.counts[group];
        for (const auto code : map->keys(key.keyCode, group)) {
            for (const auto locks : map->lockStates())
                counts.insert({code, static_cast<std::uint16_t>(*modifiers | locks)});
        }
        places.grabs.insert(counts.begin(), counts.end());
    }
    return places;
}

/// All of them or none.
bool KeyGrabsX11::grab(const Grabs &grabs)
{
    std::vector<xcb_void_cookie_t> requests;
    for (const auto root : roots) {
        for (const auto &each : grabs)
            requests.push_back(
                xcb_grab_key_checked(xcb, 0, root, each.modifiers, each.key, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
    }
    bool isGranted = true;
    for (const auto request : requests) {
        const Reply<xcb_generic_error_t> error(xcb_request_check(xcb, request));
        isGranted = isGranted && !error;
    }
    isGranted = isGranted && xcb_connection_has_error(xcb) == 0;
    if (!isGranted)
        ungrab(grabs); // harmless for what others hold
    return isGranted;
}

void KeyGrabsX11::ungrab(const Grabs &grabs)
{
    for (const auto root : roots) {
        for (const auto &each : grabs)
            xcb_ungrab_key(xcb, each.key, root, each.modifiers);
    }
    xcb_flush(xcb);
}

/// Often several announcements come for one change, or one for none: what is the same is not touched.
void KeyGrabsX11::followKeyboard()
{
    std::vector<Places> wanted;
    for (auto &wish : wishes) {
        wanted.push_back(placesOf(wish.key).value_or(wish.held));
        ungrab(without(wish.held.grabs, wanted.back().grabs)); // of all keys first: one may get the place of another
    }
    for (std::size_t i = 0; i < wishes.size(); ++i) {
        const bool isGranted = grab(without(wanted[i].grabs, wishes[i].held.grabs));
        if (!isGranted)
            ungrab(wanted[i].grabs);
        wishes[i].held = isGranted ? wanted[i] : Places{};
    }
}

std::vector<HotKeyId> KeyGrabsX11::takePresses()
{
    std::vector<HotKeyId> presses;
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(xcb)}) {
        if (event->response_type == XCB_KEY_PRESS)
            press(*reinterpret_cast<const xcb_key_press_event_t *>(event.get()), presses);
        else if (const auto *const key = reinterpret_cast<const xcb_key_release_event_t *>(event.get());
                 event->response_type == XCB_KEY_RELEASE)
            heldKeys.release(key->detail, key->time);
        else if (event->response_type == XCB_MAPPING_NOTIFY ||
                 (keyboardEvent && event->response_type == *keyboardEvent))
            followKeyboard();
    }
    return presses;
}

void KeyGrabsX11::press(const xcb_key_press_event_t &event, std::vector<HotKeyId> &presses)
{
    if (!heldKeys.press(event.detail, event.time))
        return;
    const Grab pressed{event.detail, static_cast<std::uint16_t>(event.state & allModifiers)};
    for (const auto &wish : wishes) {
        if (wish.held.counts[event.state >> groupShift & groupMask].contains(pressed))
            presses.push_back(wish.key.identifier);
    }
}

void KeyGrabsX11::checkHeldKeys()
{
    const Reply<xcb_query_keymap_reply_t> map(xcb_query_keymap_reply(xcb, xcb_query_keymap(xcb), nullptr));
    if (map)
        heldKeys.keepOnly([&](xcb_keycode_t key) { return (map->keys[key / 8] >> key % 8 & 1) != 0; });
}

} // namespace orvalen
