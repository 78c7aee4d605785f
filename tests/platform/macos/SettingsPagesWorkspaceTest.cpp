#include "platform/macos/SettingsPagesWorkspace.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "mirroring/USBMirrorManager.h"
#include "tests/support/MirroringFakes.h"
#include "tests/support/VirtualWorld.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct NotingUrlOpener : UrlOpener
{
    std::vector<std::string> opened;
    void open(std::string_view url) override { opened.emplace_back(url); }
};

struct SettingsPagesWorkspaceTest : ::testing::Test
{
    NotingUrlOpener urls;
    SettingsPagesWorkspace pages{urls};
};

TEST_F(SettingsPagesWorkspaceTest, opensEachPageByItsAddressToTheCharacter)
{
    for (const auto url : {settings_urls::displays, settings_urls::olderDisplays, settings_urls::screenRecording,
                           settings_urls::accessibility})
        EXPECT_TRUE(pages.open(url)) << url;
    EXPECT_THAT(urls.opened,
                ElementsAre("x-apple.systempreferences:com.apple.Displays-Settings.extension",
                            "x-apple.systempreferences:com.apple.preference.displays",
                            "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture",
                            "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"));
}

TEST_F(SettingsPagesWorkspaceTest, whatCannotBeMadeAnAddressIsRefusedAndNotOpened)
{
    for (const auto *const text : {"", "http://[", "http://a b", "x-apple.systempreferences:a b", "%zz:"})
        EXPECT_FALSE(pages.open(text)) << text;
    EXPECT_THAT(urls.opened, IsEmpty());
}

TEST_F(SettingsPagesWorkspaceTest, theOlderDisplaysPageIsNeverNeeded)
{
    test::VirtualWorld world;
    test::FakeUsbTree usb;
    USBMirrorManager manager({world, usb, pages});
    manager.toggleEmergencyMirror();
    EXPECT_THAT(urls.opened, ElementsAre("x-apple.systempreferences:com.apple.Displays-Settings.extension"));
}

} // namespace
} // namespace orvalen
