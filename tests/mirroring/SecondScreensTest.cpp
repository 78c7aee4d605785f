#include "mirroring/SecondScreens.h"

#include <gmock/gmock.h>

#include <set>
#include <string>

#include "tests/mirroring/SmallStack.h"
#include "tests/support/MirroringFakes.h"

namespace orvalen {
namespace {

using test::usbNode;
using test::usbNodes;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;

constexpr std::string_view iPad = "Apple iPad (Sidecar USB Bridge)";
constexpr std::string_view iPhone = "Apple iPhone (AirPlay USB)";
constexpr std::string_view android = "Android Tablet/Phone (ADB Display)";

struct Case
{
    std::string_view name;
    std::string_view type; ///< Empty: no second screen.
};

void PrintTo(const Case &each, std::ostream *stream)
{
    *stream << each.name;
}

class SecondScreenKindTest : public ::testing::TestWithParam<Case>
{
};

TEST_P(SecondScreenKindTest, isFoundByName)
{
    const auto *const kind = secondScreenKind(GetParam().name);
    EXPECT_EQ(kind ? kind->type : "", GetParam().type);
}

INSTANTIATE_TEST_SUITE_P(Words, SecondScreenKindTest,
                         ::testing::Values(Case{"ipad", iPad}, Case{"iphone", iPhone}, Case{"android", android},
                                           Case{"pixel", android}, Case{"samsung", android}, Case{"redmi", android},
                                           Case{"oneplus", android}));

INSTANTIATE_TEST_SUITE_P(Devices, SecondScreenKindTest,
                         ::testing::Values(Case{"iPad", iPad}, Case{"iPhone", iPhone}, Case{"SAMSUNG_Android", android},
                                           Case{"Samsung Galaxy Tab", android}, Case{"Pixel 7", android},
                                           Case{"Redmi Note 8", android}, Case{"OnePlus 11", android},
                                           Case{"Android Composite ADB Interface", android}, Case{"IPAD", iPad},
                                           Case{"anna's iPhone 15", iPhone}, Case{"padiPadpad", iPad}));

INSTANTIATE_TEST_SUITE_P(TheFirstRowWins, SecondScreenKindTest,
                         ::testing::Values(Case{"iPhone and iPad", iPad}, Case{"iPad Pixel", iPad},
                                           Case{"Samsung case for iPhone", iPhone}, Case{"android ipad", iPad}));

INSTANTIATE_TEST_SUITE_P(NoSecondScreens, SecondScreenKindTest,
                         ::testing::Values(Case{"", ""}, Case{"USB Peripheral", ""}, Case{"USB3.1 Hub", ""},
                                           Case{"i Pad", ""}, Case{"ipa", ""}, Case{"i-phone", ""}, Case{"Galaxy", ""},
                                           Case{"one plus", ""}, Case{"xHCI Host Controller", ""}));

INSTANTIATE_TEST_SUITE_P(OtherScripts, SecondScreenKindTest,
                         ::testing::Values(Case{"Ännas iPad", iPad}, Case{"平板 IPAD 平板", iPad},
                                           Case{"REDMİ", android}, // Turkish; its small form is i and a dot above
                                           Case{"\xEF\xBD\x89Pad", ""}, Case{"\xD0\x86Pad", ""}));

INSTANTIATE_TEST_SUITE_P(AnyBytes, SecondScreenKindTest,
                         ::testing::Values(Case{"\xFF\xFEiPad\xC3", iPad},
                                           Case{"iP\xFF"
                                                "ad",
                                                ""},
                                           Case{std::string_view("\0iPad\0", 6), iPad},
                                           Case{std::string_view("iP\0ad", 5), ""}, Case{"iPad\n\r\t\x1B[0m", iPad}));

TEST(SecondScreenKinds, areThreeWithTheirInstructions)
{
    const auto &kinds = secondScreenKinds();
    ASSERT_EQ(kinds.size(), 3U);
    EXPECT_EQ(kinds[0].type, "Apple iPad (Sidecar USB Bridge)");
    EXPECT_EQ(kinds[0].instructions,
              "Cable connected! Mac can mirror/extend display immediately via Sidecar without Wi-Fi.");
    EXPECT_EQ(kinds[1].type, "Apple iPhone (AirPlay USB)");
    EXPECT_EQ(kinds[1].instructions, "iPhone USB link ready. Can receive audio/screen mirroring stream.");
    EXPECT_EQ(kinds[2].type, "Android Tablet/Phone (ADB Display)");
    EXPECT_EQ(kinds[2].instructions, "Connected via USB. Use Scrcpy / Duet / Spacedesk to mirror Mac screen.");
}

/// Names in the order in which they are listed.
std::vector<std::string> listed(const std::vector<UsbNode> &items)
{
    std::vector<USBDeviceInfo> list;
    parseTree(items, list);
    std::vector<std::string> names;
    for (const auto &device : list)
        names.push_back(device.name);
    return names;
}

TEST(ParseTree, aDeviceIsListedAsItCallsItself)
{
    std::vector<USBDeviceInfo> list;
    parseTree(usbNodes(usbNode("Samsung Galaxy Tab ")), list);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_THAT(list[0].id, MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    EXPECT_EQ(list[0].name, "Samsung Galaxy Tab ");
    EXPECT_EQ(list[0].type, "Android Tablet/Phone (ADB Display)");
    EXPECT_TRUE(list[0].isConnected);
    EXPECT_EQ(list[0].instructions, "Connected via USB. Use Scrcpy / Duet / Spacedesk to mirror Mac screen.");
}

TEST(ParseTree, aHubIsNotListedButWhatHangsFromIt)
{
    EXPECT_THAT(listed(usbNodes(usbNode("USB 3.1 Bus", usbNode("Hub", usbNode("Hub", usbNode("iPad")))))),
                ElementsAre("iPad"));
}

TEST(ParseTree, eachBeforeThoseBelowItAndThoseBeforeTheNext)
{
    EXPECT_THAT(listed(usbNodes(usbNode("iPad 1", usbNode("iPad 2", usbNode("iPad 3")), usbNode("iPad 4")),
                                usbNode("Bus"), usbNode("iPad 5", usbNode("mouse"), usbNode("iPad 6")))),
                ElementsAre("iPad 1", "iPad 2", "iPad 3", "iPad 4", "iPad 5", "iPad 6"));
}

TEST(ParseTree, theNamelessIsNoSecondScreenButItsDevicesAre)
{
    EXPECT_THAT(listed(usbNodes(usbNode(std::nullopt, usbNode(std::nullopt), usbNode("iPhone")))),
                ElementsAre("iPhone"));
}

TEST(ParseTree, whatIsReportedTwiceIsListedTwiceUnderTwoIds)
{
    std::vector<USBDeviceInfo> list;
    parseTree(usbNodes(usbNode("iPad", usbNode("iPad"))), list);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_NE(list[0].id, list[1].id);
}

TEST(ParseTree, appendsToWhatIsThere)
{
    std::vector<USBDeviceInfo> list{placeholderDevice()};
    parseTree(usbNodes(usbNode("iPad")), list);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0], placeholderDevice());
}

TEST(ParseTree, nothingConnectedListsNothing)
{
    EXPECT_THAT(listed({}), IsEmpty());
    EXPECT_THAT(listed(usbNodes(usbNode("Bus"), usbNode(""))), IsEmpty());
}

TEST(ParseTree, aHundredThousandLevelsAreWalkedOnASmallStack)
{
    std::vector<std::string> names;
    test::onSmallStack([&] { names = listed(test::usbChain(100'000, "iPad")); });
    EXPECT_THAT(names, ElementsAre("iPad"));
}

TEST(Placeholder, saysWhatToConnect)
{
    const auto device = placeholderDevice();
    EXPECT_EQ(device.id, "virt-ipad");
    EXPECT_EQ(device.name, "iPad via USB-C (Apple Sidecar)");
    EXPECT_EQ(device.type, "Zero-Latency Hardware Mirror");
    EXPECT_FALSE(device.isConnected);
    EXPECT_EQ(device.instructions, "Connect iPad via USB-C cable. Click below to launch Sidecar mirror.");
}

} // namespace
} // namespace orvalen
