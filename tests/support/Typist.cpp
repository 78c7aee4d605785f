#include "tests/support/Typist.h"

#include <stdexcept>
#include <xcb/xtest.h>

#include "platform/linux/X11Session.h"

namespace orvalen::test {

using x11::Reply;

Typist::Typist(const std::string &display) : xcb(xcb_connect(display.c_str(), nullptr))
{
    const auto *const extension =
        xcb_connection_has_error(xcb) == 0 ? xcb_get_extension_data(xcb, &xcb_test_id) : nullptr;
    if (!extension || !extension->present) {
        xcb_disconnect(xcb);
        throw std::runtime_error("an X server on which this test can type is needed");
    }
    root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
}

Typist::~Typist()
{
    xcb_disconnect(xcb);
}

void Typist::type(const std::vector<xcb_keysym_t> &keys) const
{
    for (const auto key : keys)
        press(key);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        release(*key);
}

void Typist::typeKey(const std::vector<xcb_keysym_t> &held, xcb_keycode_t key) const
{
    for (const auto each : held)
        press(each);
    fake(XCB_KEY_PRESS, key);
    fake(XCB_KEY_RELEASE, key);
    for (const auto each : held)
        release(each);
}

xcb_keycode_t Typist::keyOf(xcb_keysym_t symbol) const
{
    const auto *const setup = xcb_get_setup(xcb);
    const auto count = static_cast<std::uint8_t>(setup->max_keycode - setup->min_keycode + 1);
    const Reply<xcb_get_keyboard_mapping_reply_t> map(
        xcb_get_keyboard_mapping_reply(xcb, xcb_get_keyboard_mapping(xcb, setup->min_keycode, count), nullptr));
    if (map) {
        const auto *const symbols = xcb_get_keyboard_mapping_keysyms(map.get());
        for (int key = 0; key < count; ++key) {
            if (symbols[key * map->keysyms_per_keycode] == symbol)
                return static_cast<xcb_keycode_t>(setup->min_keycode + key);
        }
    }
    throw std::runtime_error("no key for " + std::to_string(symbol));
}

std::uint16_t Typist::state() const
{
    const Reply<xcb_query_pointer_reply_t> pointer(xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, root), nullptr));
    return pointer ? pointer->mask : 0;
}

void Typist::fake(std::uint8_t event, xcb_keycode_t key) const
{
    xcb_test_fake_input(xcb, event, key, XCB_CURRENT_TIME, root, 0, 0, 0);
    const Reply<xcb_get_input_focus_reply_t> done(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
}

} // namespace orvalen::test
