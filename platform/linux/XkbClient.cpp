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
constexpr std::uint32_t grabsUseXkbState = 1U << 1U;
constexpr std::uint32_t lookupStateWhenGrabbed = 1U << 3U; // which has the layout, even one that is locked
constexpr std::uint32_t clientFlags = detectableAutoRepeat | grabsUseXkbState | lookupStateWhenGrabbed;

struct UseExtensionAnswer
{
    std::uint8_t responseType;
    std::uint8_t isWelcome; ///< Whether the server will have us.
};

struct PerClientFlagsAnswer
{
    std::uint8_t responseType;
    std::uint8_t device;
    std::uint16_t sequence;
    std::uint32_t length;
    std::uint32_t supported;
    std::uint32_t value; ///< As they are now.
};

struct UseExtension
{
    using Answer = UseExtensionAnswer;
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
    using Answer = PerClientFlagsAnswer;
    static constexpr std::uint8_t opcode = 21;
    std::uint8_t majorOpcode = 0;
    std::uint8_t minorOpcode = 0;
    std::uint16_t length = 0;
    std::uint16_t deviceSpec = coreKeyboard;
    std::uint16_t padding = 0;
    std::uint32_t change = clientFlags;
    std::uint32_t value = clientFlags;
    std::uint32_t controlsToChange = 0;
    std::uint32_t automaticControls = 0;
    std::uint32_t automaticControlValues = 0;
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
Reply<typename Request::Answer> ask(xcb_connection_t *xcb, Request request)
{
    xcb_generic_error_t *error = nullptr;
    Reply<typename Request::Answer> answer(
        static_cast<typename Request::Answer *>(xcb_wait_for_reply(xcb, send(xcb, request, false), &error)));
    const Reply<xcb_generic_error_t> freed(error);
    return answer;
}

} // namespace

std::optional<XkbClient> becomeXkbClient(xcb_connection_t *xcb)
{
    const auto *const data = xcb_get_extension_data(xcb, &extension);
    if (!data || !data->present)
        return std::nullopt;
    const auto welcome = ask(xcb, UseExtension{});
    if (!welcome || welcome->isWelcome == 0)
        return std::nullopt;
    send(xcb, SelectEvents{}, true);
    const auto flags = ask(xcb, PerClientFlags{});
    return XkbClient{data->first_event, flags && (flags->value & detectableAutoRepeat) != 0};
}

} // namespace orvalen::x11
