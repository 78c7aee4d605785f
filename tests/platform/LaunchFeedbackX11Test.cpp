#include "platform/linux/LaunchFeedbackX11.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <xcb/xcb.h>

#include "platform/linux/X11Session.h"
#include "tests/support/XServer.h"

namespace orvalen {
namespace {

/// A desktop that hears what programs say of their start.
class Listener
{
public:
    explicit Listener(const std::string &display) : xcb(xcb_connect(display.c_str(), nullptr), xcb_disconnect)
    {
        const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
        const auto root = xcb_setup_roots_iterator(xcb_get_setup(xcb.get())).data->root;
        xcb_change_window_attributes(xcb.get(), root, XCB_CW_EVENT_MASK, &mask);
        std::free(xcb_get_input_focus_reply(xcb.get(), xcb_get_input_focus(xcb.get()), nullptr)); // it listens
    }

    /// The next whole text; waits for it.
    std::string text()
    {
        std::string heard;
        xcb_window_t speaker = XCB_WINDOW_NONE;
        do {
            const x11::Reply<xcb_generic_event_t> event(xcb_wait_for_event(xcb.get()));
            if (!event)
                return "the server is gone";
            if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
                continue;
            const auto *const message = reinterpret_cast<const xcb_client_message_event_t *>(event.get());
            EXPECT_EQ(message->format, 8);
            EXPECT_EQ(nameOf(message->type), heard.empty() ? "_NET_STARTUP_INFO_BEGIN" : "_NET_STARTUP_INFO");
            EXPECT_TRUE(heard.empty() || message->window == speaker);
            speaker = message->window;
            heard.append(reinterpret_cast<const char *>(message->data.data8), sizeof message->data.data8);
        } while (heard.find('\0') == std::string::npos);
        return heard.c_str();
    }

private:
    std::string nameOf(xcb_atom_t atom)
    {
        const x11::Reply<xcb_get_atom_name_reply_t> reply(
            xcb_get_atom_name_reply(xcb.get(), xcb_get_atom_name(xcb.get(), atom), nullptr));
        return reply ? std::string(xcb_get_atom_name_name(reply.get()),
                                   static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get())))
                     : "";
    }

    std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> xcb;
};

class LaunchFeedbackX11Test : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ::unsetenv("WAYLAND_DISPLAY");
        ::unsetenv("XDG_SESSION_TYPE");
    }
};

TEST_F(LaunchFeedbackX11Test, theDesktopHearsThatTheLaunchIsOver)
{
    const test::XServer server;
    Listener desktop(server.display());
    endLaunchFeedback("panel/orvalen/77-0-host_TIME123456", server.display());
    EXPECT_EQ(desktop.text(), "remove: ID=panel/orvalen/77-0-host_TIME123456");
}

TEST_F(LaunchFeedbackX11Test, ofAnyLengthAndWithAnyLetters)
{
    const test::XServer server;
    Listener desktop(server.display());
    for (int length = 1; length <= 30; ++length) {
        const std::string id(static_cast<std::size_t>(length), 'x');
        endLaunchFeedback(id, server.display());
        EXPECT_EQ(desktop.text(), "remove: ID=" + id);
    }
    endLaunchFeedback("", server.display()); // says nothing
    endLaunchFeedback(R"(a "b" \c)", server.display());
    EXPECT_EQ(desktop.text(), R"(remove: ID=a\ \"b\"\ \\c)");
}

TEST_F(LaunchFeedbackX11Test, nobodyWaitsForAServerThatHangs)
{
    const test::XServer server;
    Listener desktop(server.display());
    server.suspend();
    endLaunchFeedback("id", server.display());
    server.resume();
    EXPECT_EQ(desktop.text(), "remove: ID=id");
}

TEST_F(LaunchFeedbackX11Test, anXServerInAWaylandSessionIsLeftAlone)
{
    const test::XServer server;
    Listener desktop(server.display());
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    endLaunchFeedback("first", server.display());
    ::unsetenv("WAYLAND_DISPLAY");
    endLaunchFeedback("second", server.display());
    EXPECT_EQ(desktop.text(), "remove: ID=second");
}

TEST_F(LaunchFeedbackX11Test, withoutADisplayThereIsNobodyToTell)
{
    endLaunchFeedback("id", ":nowhere");
}

} // namespace
} // namespace orvalen
