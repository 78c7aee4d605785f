#include "streaming/screencapture/CaptureBackEndX11.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "streaming/screencapture/CaptureError.h"
#include "streaming/screencapture/Strips.h"
#include "tests/screencapture/Jpeg.h"
#include "tests/screencapture/Screen.h"
#include "tests/support/XServer.h"

namespace orvalen {
namespace {

using test::Screen;
using test::XServer;

class CaptureBackEndX11Test : public testing::Test
{
protected:
    CaptureBackEndX11Test()
    {
        ::unsetenv("WAYLAND_DISPLAY");
        ::unsetenv("XDG_SESSION_TYPE");
    }
};

/// All of a picture, by turns from every lane.
std::vector<std::uint8_t> pixelsOf(Picture &picture, unsigned lanes)
{
    const auto area = picture.area();
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(area.width * area.height) * PixelLayout::bytes);
    std::vector<bool> seen(strips::count(area.height));
    for (unsigned lane = 0, ended = 0; ended < lanes; lane = (lane + 1) % lanes) {
        const auto strip = picture.next(lane);
        if (!strip) {
            ++ended;
            continue;
        }
        ended = 0;
        EXPECT_FALSE(seen[strip->index]);
        seen[strip->index] = true;
        EXPECT_EQ(strip->pixels.area, strips::area(area, strip->index));
        std::memcpy(pixels.data() + strip->index * strips::rows * strip->pixels.rowBytes(), strip->pixels.data,
                    strip->pixels.bytes());
    }
    EXPECT_EQ(std::count(seen.begin(), seen.end(), true), seen.size());
    return pixels;
}

TEST_F(CaptureBackEndX11Test, everyLaneGetsItsPartOfThePicture)
{
    const XServer server;
    Screen screen(server.display());
    const Rectangle whole{0, 0, 640, 480};
    const auto pixels = test::drawnPixels(whole.width, whole.height);
    screen.paint(whole, pixels);
    CaptureBackEndX11 backEnd(server.display());
    ASSERT_EQ(backEnd.obstacle(), "");
    for (const unsigned lanes : {1U, 2U, 4U})
        EXPECT_EQ(pixelsOf(*backEnd.open({whole, true}, lanes), lanes), pixels);
}

TEST_F(CaptureBackEndX11Test, partsOfTheScreenArePictures)
{
    const XServer server;
    Screen screen(server.display());
    screen.fill({0, 0, 640, 480}, 0);
    const Rectangle part{101, 203, 77, 131};
    const auto pixels = test::drawnPixels(part.width, part.height);
    screen.paint(part, pixels);
    CaptureBackEndX11 backEnd(server.display());
    ASSERT_EQ(backEnd.obstacle(), "");
    EXPECT_EQ(pixelsOf(*backEnd.open({part, true}, 2), 2), pixels);
}

TEST_F(CaptureBackEndX11Test, aServerThatDiesWhileItServesNobodyElseIsNoticed)
{
    XServer server;
    CaptureBackEndX11 backEnd(server.display());
    ASSERT_EQ(backEnd.obstacle(), "");
    const auto picture = backEnd.open({{0, 0, 640, 480}, true}, 1);
    ASSERT_TRUE(picture->next(0));
    server.kill();
    EXPECT_THROW(
        {
            while (picture->next(0)) {
            }
        },
        CaptureError);
}

TEST_F(CaptureBackEndX11Test, anUnfinishedPictureFreesTheServerWithItsConnection)
{
    const XServer server;
    {
        CaptureBackEndX11 backEnd(server.display());
        ASSERT_EQ(backEnd.obstacle(), "");
        ASSERT_TRUE(backEnd.open({{0, 0, 640, 480}, true}, 1)->next(0));
    }
    Screen(server.display()).fill({0, 0, 1, 1}, 0); // would wait for ever
}

TEST_F(CaptureBackEndX11Test, aFinishedPictureFreesTheServer)
{
    const XServer server;
    CaptureBackEndX11 backEnd(server.display());
    ASSERT_EQ(backEnd.obstacle(), "");
    const auto picture = backEnd.open({{0, 0, 640, 480}, true}, 1);
    while (picture->next(0)) {
    }
    Screen(server.display()).fill({0, 0, 1, 1}, 0); // would wait for ever
}

TEST_F(CaptureBackEndX11Test, monitorsBeyondTheScreenCountAsFarAsTheyAreOnIt)
{
    const XServer server;
    Screen screen(server.display());
    screen.setMonitor("PART", {600, 400, 200, 200}, true, true);
    screen.setMonitor("NOWHERE", {1000, 0, 200, 200}, false, false);
    CaptureBackEndX11 backEnd(server.display());
    ASSERT_EQ(backEnd.obstacle(), "");
    EXPECT_EQ(backEnd.displays(), (std::vector<Display>{{{600, 400, 40, 80}, true}}));
}

TEST_F(CaptureBackEndX11Test, withoutTheMonitorsExtensionThereIsOneDisplay)
{
    const XServer server({"-extension", "RANDR"});
    CaptureBackEndX11 backEnd(server.display());
    ASSERT_EQ(backEnd.obstacle(), "");
    EXPECT_EQ(backEnd.displays(), (std::vector<Display>{{{0, 0, 640, 480}, true}}));
}

TEST_F(CaptureBackEndX11Test, everyExtensionCanBeMissing)
{
    for (const auto *name : {"MIT-SHM", "XFIXES", "MIT-SCREEN-SAVER", "RANDR"}) {
        const XServer server({"-extension", name});
        Screen screen(server.display());
        const Rectangle whole{0, 0, 640, 480};
        const auto pixels = test::drawnPixels(whole.width, whole.height);
        screen.paint(whole, pixels);
        CaptureBackEndX11 backEnd(server.display());
        ASSERT_EQ(backEnd.obstacle(), "") << name;
        EXPECT_EQ(pixelsOf(*backEnd.open({whole, true}, 2), 2), pixels) << name;
    }
}

TEST_F(CaptureBackEndX11Test, withoutServerItIsNotAvailable)
{
    for (const auto *nowhere : {":54321", "no display", "unix:"}) {
        CaptureBackEndX11 backEnd(nowhere);
        EXPECT_FALSE(backEnd.isAvailable()) << nowhere;
    }
}

} // namespace
} // namespace orvalen
