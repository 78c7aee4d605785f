#include "mirroring/USBMirrorManager.h"

#include <gmock/gmock.h>

#include <chrono>
#include <memory>
#include <optional>
#include <stdexcept>

#include "mirroring/SecondScreens.h"
#include "tests/support/MirroringFakes.h"
#include "tests/support/VirtualWorld.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using test::usbNode;
using test::usbNodes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class USBMirrorManagerTest : public ::testing::Test
{
protected:
    USBMirrorManager &manager()
    {
        if (!made)
            made.emplace(USBMirrorManager::Services{world, usb, pages});
        return *made;
    }

    std::vector<std::string> names()
    {
        std::vector<std::string> list;
        for (const auto &device : manager().connectedDevices.value())
            list.push_back(device.name);
        return list;
    }

    void connect(const std::string &name)
    {
        usb.onRead = [name] { return usbNodes(usbNode("Bus", usbNode(name))); };
    }

    test::VirtualWorld world;
    test::FakeUsbTree usb;
    test::FakeSettingsPages pages;
    std::optional<USBMirrorManager> made;
};

TEST_F(USBMirrorManagerTest, startsWithAnEmptyListAndIsReadyToBridge)
{
    connect("iPad");
    EXPECT_FALSE(manager().isMirroringActive);
    EXPECT_THAT(manager().connectedDevices.value(), IsEmpty());
    EXPECT_EQ(manager().mirrorStatusMessage.value(), "Ready to bridge");
}

TEST_F(USBMirrorManagerTest, scansAtOnce)
{
    connect("iPad");
    manager();
    world.settle();
    EXPECT_THAT(names(), ElementsAre("iPad"));
}

TEST_F(USBMirrorManagerTest, scansOnceAndThenOnlyWhenAsked)
{
    int reads = 0;
    usb.onRead = [&] {
        ++reads;
        return usbNodes();
    };
    manager();
    world.advance(24h);
    EXPECT_EQ(reads, 1);
    manager().scanConnectedDevices();
    world.settle();
    EXPECT_EQ(reads, 2);
}

TEST_F(USBMirrorManagerTest, withoutASecondScreenThereIsThePlaceholderAlone)
{
    connect("Mouse");
    manager();
    world.settle();
    EXPECT_THAT(manager().connectedDevices.value(), ElementsAre(placeholderDevice()));
}

TEST_F(USBMirrorManagerTest, withoutAnyAnswerThereIsThePlaceholderToo)
{
    manager();
    world.settle();
    EXPECT_THAT(manager().connectedDevices.value(), ElementsAre(placeholderDevice()));
    usb.onRead = []() -> std::vector<UsbNode> { throw std::runtime_error("no USB today"); };
    manager().connectedDevices = std::vector<USBDeviceInfo>{};
    manager().scanConnectedDevices();
    world.settle();
    EXPECT_THAT(manager().connectedDevices.value(), ElementsAre(placeholderDevice()));
}

TEST_F(USBMirrorManagerTest, aScanReplacesTheWholeList)
{
    connect("iPad");
    manager();
    world.settle();
    connect("Pixel 7");
    manager().scanConnectedDevices();
    EXPECT_THAT(names(), ElementsAre("iPad")); // until the result is there
    world.settle();
    EXPECT_THAT(names(), ElementsAre("Pixel 7"));
}

TEST_F(USBMirrorManagerTest, theSameDeviceHasAnotherIdInEachScan)
{
    connect("iPad");
    manager();
    world.settle();
    const auto first = manager().connectedDevices.value().front().id;
    manager().scanConnectedDevices();
    world.settle();
    EXPECT_NE(manager().connectedDevices.value().front().id, first);
}

TEST_F(USBMirrorManagerTest, theListIsPublishedOncePerScan)
{
    connect("iPad");
    int announced = 0;
    std::vector<std::size_t> sizes;
    const auto observer = manager().observe([&] { ++announced; });
    const auto subscription =
        manager().connectedDevices.subscribe([&](const auto &list) { sizes.push_back(list.size()); });
    world.settle();
    EXPECT_EQ(announced, 1);
    EXPECT_THAT(sizes, ElementsAre(0U, 1U));
}

TEST_F(USBMirrorManagerTest, aScanTouchesNothingElse)
{
    connect("iPad");
    manager().isMirroringActive = true;
    manager().mirrorStatusMessage = "as it was";
    manager().scanConnectedDevices();
    world.settle();
    EXPECT_TRUE(manager().isMirroringActive);
    EXPECT_EQ(manager().mirrorStatusMessage.value(), "as it was");
    EXPECT_THAT(pages.opened, IsEmpty());
}

TEST_F(USBMirrorManagerTest, ofOverlappingScansTheOneThatEndsLastSetsTheList)
{
    usb.onRead = [&] {
        world.sleepFor(5s);
        return usbNodes(usbNode("slow iPad"));
    };
    manager();
    world.at(1s, [&] {
        connect("quick iPad");
        manager().scanConnectedDevices();
    });
    world.at(2s, [&] { EXPECT_THAT(names(), ElementsAre("quick iPad")); });
    world.advance(10s);
    EXPECT_THAT(names(), ElementsAre("slow iPad"));
}

TEST_F(USBMirrorManagerTest, withoutAThreadForItTheListStaysAsItIs)
{
    connect("iPad");
    world.threadsLeft = 0;
    manager();
    world.settle();
    EXPECT_THAT(names(), IsEmpty());
    world.threadsLeft = 1;
    manager().scanConnectedDevices();
    world.settle();
    EXPECT_THAT(names(), ElementsAre("iPad"));
    manager().scanConnectedDevices();
    world.settle();
    EXPECT_THAT(names(), ElementsAre("iPad"));
}

TEST_F(USBMirrorManagerTest, mayGoWhileAScanIsUnderWay)
{
    bool hasEnded = false;
    usb.onRead = [&] {
        world.sleepFor(5s);
        hasEnded = true;
        return usbNodes();
    };
    manager();
    world.at(1s, [&] { made.reset(); });
    world.advance(10s);
    EXPECT_TRUE(hasEnded);
}

TEST_F(USBMirrorManagerTest, theAddressesOfThePages)
{
    EXPECT_EQ(settings_urls::displays, "x-apple.systempreferences:com.apple.Displays-Settings.extension");
    EXPECT_EQ(settings_urls::olderDisplays, "x-apple.systempreferences:com.apple.preference.displays");
    EXPECT_EQ(settings_urls::screenRecording,
              "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture");
    EXPECT_EQ(settings_urls::accessibility,
              "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
}

TEST_F(USBMirrorManagerTest, theDisplaysHaveOneAddress)
{
    manager().openDisplaysSettings();
    EXPECT_THAT(pages.opened, ElementsAre(settings_urls::displays));
}

TEST_F(USBMirrorManagerTest, andAnOtherOneOnlyForSystemsThatCannotReadThat)
{
    pages.noUrls.insert(std::string(settings_urls::displays));
    manager().openDisplaysSettings();
    EXPECT_THAT(pages.opened, ElementsAre(settings_urls::displays, settings_urls::olderDisplays));
    pages.noUrls.insert(std::string(settings_urls::olderDisplays));
    manager().openDisplaysSettings();
    EXPECT_EQ(pages.opened.size(), 4U); // and that was all
}

TEST_F(USBMirrorManagerTest, theOtherPagesHaveNoSecondAddress)
{
    manager().openScreenRecordingSettings();
    manager().openAccessibilitySettings();
    EXPECT_THAT(pages.opened, ElementsAre(settings_urls::screenRecording, settings_urls::accessibility));
    pages.opened.clear();
    pages.noUrls = {std::string(settings_urls::screenRecording), std::string(settings_urls::accessibility)};
    manager().openScreenRecordingSettings();
    manager().openAccessibilitySettings();
    EXPECT_THAT(pages.opened, ElementsAre(settings_urls::screenRecording, settings_urls::accessibility));
}

TEST_F(USBMirrorManagerTest, theEmergencyMirrorIsThePageOfTheDisplaysAndNoState)
{
    for (const bool isActive : {false, true}) {
        manager().isMirroringActive = isActive;
        pages.opened.clear();
        int announced = 0;
        const auto observer = manager().observe([&] { ++announced; });
        manager().toggleEmergencyMirror();
        EXPECT_THAT(pages.opened, ElementsAre(settings_urls::displays));
        EXPECT_EQ(manager().isMirroringActive, isActive);
        EXPECT_EQ(announced, 0);
    }
}

} // namespace
} // namespace orvalen
