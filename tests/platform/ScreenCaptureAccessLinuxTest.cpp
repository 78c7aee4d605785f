#include "platform/linux/ScreenCaptureAccessLinux.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "platform/linux/X11Session.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/XServer.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using test::XServer;

constexpr auto patience = 60s;

/// A session without any capture command, which tests furnish.
class ScreenCaptureAccessLinuxTest : public testing::Test
{
protected:
    ScreenCaptureAccessLinuxTest()
    {
        set("PATH", folder.path());
        for (const auto *variable : {"DISPLAY", "WAYLAND_DISPLAY", "XDG_SESSION_TYPE"})
            set(variable, std::nullopt);
    }
    ~ScreenCaptureAccessLinuxTest() override
    {
        for (const auto &[variable, value] : before)
            change(variable, value);
    }

    void set(const std::string &variable, const std::optional<std::string> &value)
    {
        const char *const old = std::getenv(variable.c_str());
        before.emplace(variable, old ? std::optional<std::string>(old) : std::nullopt);
        change(variable, value);
    }

    static void change(const std::string &variable, const std::optional<std::string> &value)
    {
        if (value)
            ::setenv(variable.c_str(), value->c_str(), 1);
        else
            ::unsetenv(variable.c_str());
    }

    const test::TemporaryFolder folder;
    std::map<std::string, std::optional<std::string>> before;
};

/// A server, while the search path is still one on which it can be found.
struct Server
{
    explicit Server(const std::string &path)
    {
        const std::string kept = std::getenv("PATH");
        ::setenv("PATH", path.c_str(), 1);
        server.emplace();
        ::setenv("PATH", kept.c_str(), 1);
    }
    std::optional<XServer> server;
};

TEST_F(ScreenCaptureAccessLinuxTest, aServerOfTheSessionsOwnGrantsIt)
{
    const Server server(*before["PATH"]);
    EXPECT_TRUE(ScreenCaptureAccessLinux(server.server->display(), patience).isGranted());
    set("DISPLAY", server.server->display());
    ScreenCaptureAccessLinux access({}, patience);
    EXPECT_TRUE(access.isGranted());
    access.request(); // changes nothing
    EXPECT_TRUE(access.isGranted());
}

TEST_F(ScreenCaptureAccessLinuxTest, withoutServerOrCommandItIsNotGranted)
{
    EXPECT_FALSE(ScreenCaptureAccessLinux({}, patience).isGranted());
    EXPECT_FALSE(ScreenCaptureAccessLinux(":54321", patience).isGranted());
}

TEST_F(ScreenCaptureAccessLinuxTest, aWaylandSessionsServerDoesNotGrantIt)
{
    const Server server(*before["PATH"]);
    ScreenCaptureAccessLinux access(server.server->display(), patience);
    set("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_FALSE(access.isGranted());
    set("WAYLAND_DISPLAY", std::nullopt);
    set("XDG_SESSION_TYPE", "wayland");
    EXPECT_FALSE(access.isGranted());
    set("XDG_SESSION_TYPE", "x11");
    EXPECT_TRUE(access.isGranted());
}

TEST_F(ScreenCaptureAccessLinuxTest, aCommandOnTheSearchPathGrantsIt)
{
    ScreenCaptureAccessLinux access({}, patience);
    const auto command = folder / "screencapture";
    std::ofstream(command) << "#!/bin/sh\n";
    EXPECT_FALSE(access.isGranted()); // not executable
    std::filesystem::permissions(command, std::filesystem::perms::owner_all);
    EXPECT_TRUE(access.isGranted());
    set("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_TRUE(access.isGranted()); // it will know how
    set("PATH", "/nowhere:" + folder.path().string() + ":");
    EXPECT_TRUE(access.isGranted());
    set("PATH", "/nowhere");
    EXPECT_FALSE(access.isGranted());
    set("PATH", std::nullopt);
    EXPECT_FALSE(access.isGranted());
}

TEST_F(ScreenCaptureAccessLinuxTest, aFolderOfThatNameDoesNotGrantIt)
{
    std::filesystem::create_directory(folder / "screencapture");
    EXPECT_FALSE(ScreenCaptureAccessLinux({}, patience).isGranted());
}

TEST_F(ScreenCaptureAccessLinuxTest, aServerThatDoesNotAnswerIsNotWaitedFor)
{
    const Server server(*before["PATH"]);
    server.server->suspend();
    ScreenCaptureAccessLinux access(server.server->display(), 1ms);
    EXPECT_FALSE(access.isGranted());
    EXPECT_FALSE(access.isGranted());
    server.server->resume();
    while (!access.isGranted()) { // when the late answer has come, it asks anew
    }
}

TEST(X11Session, isAWaylandOneByItsEnvironment)
{
    EXPECT_TRUE(x11::isWaylandSession("wayland-0", ""));
    EXPECT_TRUE(x11::isWaylandSession("wayland-0", "x11"));
    EXPECT_TRUE(x11::isWaylandSession("", "wayland"));
    EXPECT_FALSE(x11::isWaylandSession("", ""));
    EXPECT_FALSE(x11::isWaylandSession("", "x11"));
    EXPECT_FALSE(x11::isWaylandSession("", "tty"));
}

TEST(X11Session, aServerOfItsOwnIsNoGuest)
{
    const XServer server;
    auto *const xcb = xcb_connect(server.display().c_str(), nullptr);
    EXPECT_FALSE(x11::isGuest(xcb, xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root));
    xcb_disconnect(xcb);
}

} // namespace
} // namespace orvalen
