#include "streaming/OfflineBridgeManager.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "tests/support/StreamFakes.h"

namespace orvalen {
namespace {

using test::networkInterface;
using Interfaces = std::vector<NetworkInterface>;

const USBBridgeInfo none{.isDetected = false,
                         .ipAddress = "",
                         .interfaceName = "",
                         .deviceLabel = "No USB Tethering Active",
                         .connectionURL = ""};

const USBBridgeInfo notConnected{
    .isDetected = false, .ipAddress = "", .interfaceName = "", .deviceLabel = "Not Connected", .connectionURL = ""};

NetworkInterface loopback()
{
    auto entry = networkInterface("lo0", "127.0.0.1");
    entry.isLoopback = true;
    return entry;
}

USBBridgeInfo found(const Interfaces &interfaces)
{
    return usbBridgeAmong(interfaces, 8999);
}

TEST(UsbBridge, anIPhoneThatSharesItsConnectionIsFoundBesideTheWifi)
{
    const USBBridgeInfo expected{.isDetected = true,
                                 .ipAddress = "172.20.10.2",
                                 .interfaceName = "en5",
                                 .deviceLabel = "Apple iPhone USB Link",
                                 .connectionURL = "http://172.20.10.2:8999"};
    EXPECT_EQ(found({loopback(), networkInterface("en0", "192.168.1.20"), networkInterface("en5", "172.20.10.2")}),
              expected);
}

TEST(UsbBridge, theTetheringRangesOfAndroidHaveTheirLabel)
{
    for (const auto *address : {"192.168.42.129", "192.168.43.1", "192.168.44.200"})
        EXPECT_EQ(found({networkInterface("en6", address)}).deviceLabel, "Android USB Tether Link") << address;
    for (const auto *address : {"192.168.41.129", "192.168.45.1", "192.168.4.42", "10.192.168.42"})
        EXPECT_EQ(found({networkInterface("en6", address)}).deviceLabel, "USB Network Bridge") << address;
}

TEST(UsbBridge, aBridgeInterfaceCountsByItsName)
{
    const auto bridge = found({networkInterface("bridge100", "192.168.64.1")});
    EXPECT_EQ(bridge.deviceLabel, "USB Network Bridge");
    EXPECT_EQ(bridge.interfaceName, "bridge100");
    EXPECT_EQ(found({networkInterface("virbridge", "192.168.64.1")}).deviceLabel, "USB Network Bridge");
}

TEST(UsbBridge, anyOtherPortWhoseNameBeginsLikeAnEthernetPortCounts)
{
    for (const auto *name : {"en1", "en7", "en12", "en", "enp0s31f6"})
        EXPECT_EQ(found({networkInterface(name, "10.0.0.5")}).deviceLabel, "USB Network Bridge") << name;
    for (const auto *name : {"eth0", "wlan0", "Bridge0", "xen0", "EN1", ""})
        EXPECT_EQ(found({networkInterface(name, "10.0.0.5")}), none) << name;
}

TEST(UsbBridge, aTunnelIsNoBridge)
{
    EXPECT_EQ(found({networkInterface("utun2", "10.8.0.3")}), none);
}

TEST(UsbBridge, aTunnelWithAnAddressOfTheIPhonesRangeIsTakenForOne)
{
    const auto bridge = found({networkInterface("utun2", "172.16.0.9")});
    EXPECT_EQ(bridge.deviceLabel, "Apple iPhone USB Link");
    EXPECT_EQ(bridge.interfaceName, "utun2");
}

TEST(UsbBridge, theAddressCountsForMoreThanTheName)
{
    EXPECT_EQ(found({networkInterface("bridge0", "172.20.10.1")}).deviceLabel, "Apple iPhone USB Link");
    EXPECT_EQ(found({networkInterface("wlan0", "192.168.43.1")}).deviceLabel, "Android USB Tether Link");
    EXPECT_EQ(found({networkInterface("en5", "17.2.0.1")}).deviceLabel, "USB Network Bridge");
}

TEST(UsbBridge, theBuiltInWifiIsNeverABridgeWhateverItsAddress)
{
    for (const auto *address : {"172.20.10.5", "192.168.42.7", "10.0.0.5"})
        EXPECT_EQ(found({networkInterface("en0", address)}), none) << address;
}

TEST(UsbBridge, addressesThatNobodyElseReachesAreSkipped)
{
    for (const auto *address : {"127.0.0.1", "127.8.8.8", "169.254.11.12"})
        EXPECT_EQ(found({networkInterface("en5", address)}), none) << address;
    EXPECT_TRUE(found({networkInterface("en5", "169.25.4.1")}).isDetected);
}

TEST(UsbBridge, upOrRunningIsEnough)
{
    auto entry = networkInterface("en5", "172.20.10.2");
    entry.isUp = false;
    EXPECT_TRUE(found({entry}).isDetected) << "running, not up";
    entry.isUp = true;
    entry.isRunning = false;
    EXPECT_TRUE(found({entry}).isDetected) << "up, not running";
    entry.isUp = false;
    EXPECT_EQ(found({entry}), none) << "neither";
}

TEST(UsbBridge, theLoopbackFlagIsNotLookedAt)
{
    auto entry = networkInterface("en5", "172.20.10.2");
    entry.isLoopback = true;
    EXPECT_TRUE(found({entry}).isDetected);
}

TEST(UsbBridge, entriesWithoutAnIPv4AddressThatCanBeWrittenAreSkipped)
{
    auto withoutAddress = networkInterface("en5", "");
    withoutAddress.family = NetworkInterface::Family::none;
    withoutAddress.address.reset();
    auto another = networkInterface("en5", "fe80::1");
    another.family = NetworkInterface::Family::other;
    auto unwritable = networkInterface("en5", "");
    unwritable.address.reset();
    EXPECT_EQ(found({withoutAddress, another, unwritable}), none);
    EXPECT_EQ(found({withoutAddress, another, unwritable, networkInterface("en6", "10.0.0.5")}).interfaceName, "en6");
}

TEST(UsbBridge, ofTwoLinksTheFirstInTheListWins)
{
    const auto iPhone = networkInterface("en5", "172.20.10.2");
    const auto wired = networkInterface("en7", "10.0.0.5");
    EXPECT_EQ(found({wired, iPhone}).interfaceName, "en7");
    EXPECT_EQ(found({iPhone, wired}).interfaceName, "en5");
}

TEST(UsbBridge, noListAndAnEmptyOneMeanNotConnected)
{
    EXPECT_EQ(usbBridgeAmong(std::nullopt, 8999), notConnected);
    EXPECT_EQ(usbBridgeAmong(Interfaces{}, 8999), notConnected);
    EXPECT_EQ(found({loopback()}), none) << "a list without a link is another matter";
}

TEST(UsbBridge, thePortGoesIntoTheAddressToOpenAndNowhereElse)
{
    const Interfaces interfaces{networkInterface("en5", "172.20.10.2")};
    auto expected = usbBridgeAmong(interfaces, 8999);
    expected.connectionURL = "http://172.20.10.2:9000";
    EXPECT_EQ(usbBridgeAmong(interfaces, 9000), expected);
    EXPECT_EQ(usbBridgeAmong(interfaces, -1).connectionURL, "http://172.20.10.2:-1");
    EXPECT_EQ(usbBridgeAmong(Interfaces{}, 9000), notConnected);
}

TEST(OfflineBridgeManager, looksAnewAtEachQuestion)
{
    test::FakeNetworkInterfaces interfaces;
    OfflineBridgeManager manager(interfaces);
    EXPECT_EQ(manager.detectUSBBridge(), notConnected);
    EXPECT_EQ(manager.getOfflineUSBAddress(), "");

    interfaces.entries = {networkInterface("en5", "172.20.10.2")};
    EXPECT_EQ(manager.detectUSBBridge().connectionURL, "http://172.20.10.2:8999");
    EXPECT_EQ(manager.detectUSBBridge(9001).connectionURL, "http://172.20.10.2:9001");
    EXPECT_EQ(manager.getOfflineUSBAddress(), "172.20.10.2");

    interfaces.entries.reset();
    EXPECT_EQ(manager.detectUSBBridge(), notConnected);
}

} // namespace
} // namespace orvalen
