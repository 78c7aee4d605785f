#include <gtest/gtest.h>

#include "tests/support/ColorSchemeFake.h"
#include "tests/ui/CodeReader.h"
#include "tests/ui/StreamWindow.h"
#include "ui/kit/Theme.h"

namespace orvalen {
namespace {

using namespace test;

/// The whole window with a running stream, as a phone's camera has it before it.
struct CodeOnScreen : StreamWindow
{
    CodeOnScreen()
    {
        webServer.isRunning = true;
        settle();
    }

    void SetUp() override
    {
        if (!hasCodeReader())
            GTEST_SKIP() << "install zbar-tools";
    }

    void setDark(bool dark)
    {
        ChosenScheme scheme;
        window.followColorScheme(scheme);
        scheme.choose(dark);
        settle();
        EXPECT_EQ(kit::isDark(window.palette()), dark);
    }
};

TEST_F(CodeOnScreen, isReadOutOfThePictureOfTheWindowAtEveryScaleInBothThemes)
{
    for (const bool dark : {false, true}) {
        setDark(dark);
        for (const int width : {815, 1000}) {
            window.resize(width, 680);
            settle();
            for (const double scale : {1.0, 1.5, 2.0}) {
                EXPECT_EQ(readBack(drawn(window, scale)), "http://192.168.1.20:8999")
                    << (dark ? "dark" : "light") << " at scale " << scale << ", " << width << " px wide";
            }
        }
    }
}

// At the scale that the program runs with.
TEST_F(CodeOnScreen, isReadOutOfWhatTheScreenShows)
{
    for (const bool dark : {false, true}) {
        setDark(dark);
        const auto picture = window.grab().toImage();
        EXPECT_EQ(picture.width(), qRound(window.width() * window.devicePixelRatioF()));
        EXPECT_EQ(readBack(picture), "http://192.168.1.20:8999") << (dark ? "dark" : "light");
    }
}

TEST_F(CodeOnScreen, isReadWhereTheFontIsLargeAndTheLayoutMirrored)
{
    window.setLayoutDirection(Qt::RightToLeft);
    auto font = window.font();
    font.setPixelSize(20);
    window.setFont(font);
    window.resize(815, 680);
    settle();
    EXPECT_EQ(readBack(drawn(window, 1.5)), "http://192.168.1.20:8999");
}

TEST_F(CodeOnScreen, isNotThereWithoutACodeOrAStream)
{
    webServer.qrCodeImage = std::nullopt;
    settle();
    EXPECT_EQ(readBack(drawn(window, 2.0)), "");
    webServer.refreshIPs();
    settle();
    EXPECT_EQ(readBack(drawn(window, 2.0)), "http://192.168.1.20:8999");
    webServer.isRunning = false;
    settle();
    EXPECT_EQ(readBack(drawn(window, 2.0)), "");
}

} // namespace
} // namespace orvalen
