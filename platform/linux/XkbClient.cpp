#include "platform/linux/XkbClient.h"

#include <array>
#include <memory>
#include <sys/uio.h>
#include <xcb/xcbext.h>

#include "platform/linux/X11Session.h"

namespace orvalen::x11 {

namespace {

// By hand, because xcb's own header for this extension names a member "explicit" and is none for this language.
std::array<char, 10> extensionName{"XKEYBOARD"};
xcb_extension_t extension{extensionName.data(), 0};

constexpr std::uint16_t coreKeyboard = 0x100;
constexpr std::uint16_t newKeyboardNotify = 1U << 0U;
constexpr std::uint16_t mapNotify = 1U << 1U;
constexpr std::uint32_t detectableAutoRepeat = 1U << 0U;

struct UseExtension
{
    static constexpr std::uint8_t opcode = 0;
    std::uint8_t majorOpcode = 0; // these three are filled in by xcb
    std::uint8_t minorOpcode = 0;
    std::uint16_t length = 0;
    std::uint16_t wantedMajor = 1;
    std::uint16_t wantedMinor = 0;
};

struct SelectEvents
{
    static constexpr std::uint8_t opcode = 1;
    std::uint8_t majorOpcode = 0;
    std::uint8_t minorOpcode = 0;
    std::uint16_t length = 0;
    std::uint16_t deviceSpec = coreKeyboard;
    std::uint16_t affectWhich = newKeyboardNotify | mapNotify;
    std::uint16_t clear = 0;
    std::uint16_t selectAll = newKeyboardNotify | mapNotify;
    std::uint16_t affectMap = 0xff;
    std::uint16_t map = 0xff;
};

struct PerClientFlags
{
    static constexpr std::uint8_t opcode = 21;
    std::uint8_t majorOpcode = 0;
    std::uint8_t minorOpcode = 0;
    std::uint16_t length = 0;
    std::uint16_t deviceSpec = coreKeyboard;
    std::uint16_t padding = 0;
    std::uint32_t change = detectableAutoRepeat;
    std::uint32_t value = detectableAutoRepeat;
    std::uint32_t controlsToChange = 0;
    std::uint32_t automaticControls = 0;
    std::uint32_t automaticControlValues = 0;
};

/// The beginning of every answer.
struct Answer
{
    std::uint8_t responseType;
    std::uint8_t flag; ///< To UseExtension: whether the server will have us.
};

template <typename Request>
unsigned int send(xcb_connection_t *xcb, Request request, bool isVoid)
{
    const xcb_protocol_request_t protocol{1, &extension, Request::opcode, isVoid};
    std::array<iovec, 3> parts{}; // xcb wants two more in front
    parts[2] = {&request, sizeof request};
    return xcb_send_request(xcb, isVoid ? 0 : XCB_REQUEST_CHECKED, &parts[2], &protocol);
}

template <typename Request>
Reply<Answer> ask(xcb_connection_t *xcb, Request request)
{
    xcb_generic_error_t *error = nullptr;
    Reply<Answer> answer(static_cast<Answer *>(xcb_wait_for_reply(xcb, send(xcb, request, false), &error)));
    const Reply<xcb_generic_error_t> freed(error);
    return answer;
}

} // namespace

std::optional<std::uint8_t> becomeXkbClient(xcb_connection_t *xcb)
{
    const auto *const data = xcb_get_extension_data(xcb, &extension);
    if (!data || !data->present)
        return std::nullopt;
    const auto welcome = ask(xcb, UseExtension{});
    if (!welcome || welcome->flag == 0)
        return std::nullopt;
    send(xcb, SelectEvents{}, true);
    ask(xcb, PerClientFlags{});
    return data->first_event;
}

} // namespace orvalen::x11
