#include "streaming/StreamAddresses.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/support/StreamFakes.h"

namespace orvalen {
namespace {

using test::networkInterface;
using Interfaces = std::vector<NetworkInterface>;

std::string wifi(const Interfaces &interfaces)
{
    return wifiAddressAmong(interfaces);
}

TEST(WifiAddress, theBuiltInWifiTakesTheAddressFromAnAdapterListedBeforeIt)
{
    EXPECT_EQ(wifi({networkInterface("en7", "10.0.0.5"), networkInterface("en0", "192.168.1.20")}), "192.168.1.20");
}

TEST(WifiAddress, anAdapterListedAfterTheBuiltInWifiTakesNothing)
{
    EXPECT_EQ(wifi({networkInterface("en0", "192.168.1.20"), networkInterface("en7", "10.0.0.5")}), "192.168.1.20");
}

TEST(WifiAddress, anAdapterAloneIsUsed)
{
    EXPECT_EQ(wifi({networkInterface("en7", "10.0.0.5")}), "10.0.0.5");
    EXPECT_EQ(wifi({networkInterface("wlp3s0", "192.168.1.77")}), "192.168.1.77");
}

TEST(WifiAddress, ofSeveralOthersTheFirstOneWins)
{
    EXPECT_EQ(wifi({networkInterface("en7", "10.0.0.5"), networkInterface("utun2", "10.8.0.3")}), "10.0.0.5");
    EXPECT_EQ(wifi({networkInterface("utun2", "10.8.0.3"), networkInterface("en7", "10.0.0.5")}), "10.8.0.3");
}

TEST(WifiAddress, ofTheTwoBuiltInPortsTheLaterOneWins)
{
    EXPECT_EQ(wifi({networkInterface("en0", "192.168.1.20"), networkInterface("en1", "192.168.1.21")}), "192.168.1.21");
    EXPECT_EQ(wifi({networkInterface("en1", "192.168.1.21"), networkInterface("en0", "192.168.1.20")}), "192.168.1.20");
}

TEST(WifiAddress, ofTwoAddressesOfTheBuiltInWifiTheLaterOneWins)
{
    EXPECT_EQ(wifi({networkInterface("en0", "192.168.1.20"), networkInterface("en0", "192.168.1.30")}), "192.168.1.30");
}

TEST(WifiAddress, onlyTheVeryNamesOfTheBuiltInPortsCount)
{
    for (const auto *name : {"en2", "en10", "en01", "EN0", "en0:1", "xen0"})
        EXPECT_EQ(wifi({networkInterface("en7", "10.0.0.5"), networkInterface(name, "192.168.1.20")}), "10.0.0.5")
            << name;
}

TEST(WifiAddress, withoutAnyItIsTheMachineItself)
{
    EXPECT_EQ(wifiAddressAmong(std::nullopt), "127.0.0.1");
    EXPECT_EQ(wifi({}), "127.0.0.1");
    auto loopback = networkInterface("lo0", "127.0.0.1");
    loopback.isLoopback = true;
    EXPECT_EQ(wifi({loopback}), "127.0.0.1");
}

TEST(WifiAddress, aLinkLocalAddressIsNone)
{
    EXPECT_EQ(wifi({networkInterface("en0", "169.254.12.13")}), "127.0.0.1");
    EXPECT_EQ(wifi({networkInterface("en0", "169.254.12.13"), networkInterface("en7", "10.0.0.5")}), "10.0.0.5");
    EXPECT_EQ(wifi({networkInterface("en0", "169.25.4.1")}), "169.25.4.1");
}

TEST(WifiAddress, anAddressOfTheMachineItselfIsNoneOnWhateverInterface)
{
    EXPECT_EQ(wifi({networkInterface("en7", "10.0.0.5"), networkInterface("en0", "127.0.0.2")}), "10.0.0.5");
}

TEST(WifiAddress, upAndRunningAreBothWanted)
{
    auto entry = networkInterface("en0", "192.168.1.20");
    entry.isUp = false;
    EXPECT_EQ(wifi({entry}), "127.0.0.1") << "running, not up";
    entry.isUp = true;
    entry.isRunning = false;
    EXPECT_EQ(wifi({entry}), "127.0.0.1") << "up, not running";
}

TEST(WifiAddress, aLoopbackInterfaceIsSkippedWhateverItsAddress)
{
    auto entry = networkInterface("en0", "10.1.1.1");
    entry.isLoopback = true;
    EXPECT_EQ(wifi({entry}), "127.0.0.1");
}

TEST(WifiAddress, entriesWithoutAnIPv4AddressThatCanBeWrittenAreSkipped)
{
    auto withoutAddress = networkInterface("en0", "");
    withoutAddress.family = NetworkInterface::Family::none;
    withoutAddress.address.reset();
    auto another = networkInterface("en0", "fd00::1");
    another.family = NetworkInterface::Family::other;
    auto unwritable = networkInterface("en0", "");
    unwritable.address.reset();
    EXPECT_EQ(wifi({withoutAddress, another, unwritable}), "127.0.0.1");
    EXPECT_EQ(wifi({networkInterface("en7", "10.0.0.5"), withoutAddress, another, unwritable}), "10.0.0.5");
}

TEST(BonjourHost, whatTheResponderSaysInSmallLettersAndWithItsDomain)
{
    EXPECT_EQ(bonjourHost("MacBook-Air\n", "other"), "macbook-air.local");
    EXPECT_EQ(bonjourHost(" \t\r\n MacBook-Air \n\n", "other"), "macbook-air.local");
    EXPECT_EQ(bonjourHost("macbook-air", "other"), "macbook-air.local");
}

TEST(BonjourHost, whatTheResponderSaysIsTakenAsAWhole)
{
    EXPECT_EQ(bonjourHost("Office.Laptop\n", "other"), "office.laptop.local");
    EXPECT_EQ(bonjourHost("My Laptop", "other"), "my laptop.local");
}

TEST(BonjourHost, lettersOfEveryScriptBecomeSmallOnes)
{
    EXPECT_EQ(bonjourHost("BÜRO-ΑΘΗΝΑ-МОСКВА", "other"), "büro-αθηνα-москва.local");
    EXPECT_EQ(bonjourHost("\u00A0\u2003Büro\u2028", "other"), "büro.local") << "white space of every script goes";
}

TEST(BonjourHost, withoutAnAnswerTheProcessesNameUpToItsFirstDot)
{
    EXPECT_EQ(bonjourHost(std::nullopt, "Laptop.Example.org"), "laptop.local");
    EXPECT_EQ(bonjourHost(std::nullopt, "LAPTOP"), "laptop.local");
    EXPECT_EQ(bonjourHost(std::nullopt, ".example"), "example.local");
}

TEST(BonjourHost, anAnswerOfWhiteSpaceOrOfBytesThatAreNoTextIsNone)
{
    EXPECT_EQ(bonjourHost("", "laptop"), "laptop.local");
    EXPECT_EQ(bonjourHost(" \n", "laptop"), "laptop.local");
    EXPECT_EQ(bonjourHost("Mac\xFF", "laptop"), "laptop.local");
    EXPECT_EQ(bonjourHost("\xED\xA0\x80", "laptop"), "laptop.local") << "half a surrogate pair";
}

TEST(BonjourHost, thereIsAlwaysAName)
{
    for (const auto *name : {"", ".", "..", "\xFF"})
        EXPECT_EQ(bonjourHost(std::nullopt, name), "mac.local");
    EXPECT_EQ(bonjourHost("\n", ""), "mac.local");
}

TEST(StreamURL, hostAndPort)
{
    EXPECT_EQ(streamURL("192.168.1.20", 8999), "http://192.168.1.20:8999");
    EXPECT_EQ(streamURL("macbook-air.local", 9000), "http://macbook-air.local:9000");
    EXPECT_EQ(streamURL("macbook-air.local", -3), "http://macbook-air.local:-3");
}

TEST(StreamURL, thoseOfRealHostsAreValid)
{
    for (const auto *url : {"http://192.168.1.20:8999", "http://macbook-air.local:9000", "http://büro.local:8088"})
        EXPECT_TRUE(isValidURL(url)) << url;
}

TEST(StreamURL, whatNoBrowserCouldOpenIsNotValid)
{
    for (const auto *url :
         {"", "http://", "http://:8999", "http://my laptop.local:8999", "http://host:", "http://host", "http://host:-3",
          "http://host:89x", "http://a/b:1", "http://a?b:1", "http://a#b:1", "http://a@b:1", "http://a%b:1",
          "http://a\nb:1", "http://a\x7F:1", "http://a\xFF:1", "file:///etc/passwd", "http:/a:1"})
        EXPECT_FALSE(isValidURL(url)) << url;
}

TEST(SpokenAddress, theNumbersOfTheAddressAreReadOutWithTheirDots)
{
    EXPECT_EQ(spokenAddress("192.168.1.20", "macbook-air.local", 8999),
              "Orvalen screen stream online. Open phone browser and type: 192 dot 168 dot 1 dot 20 colon 8999. Or, "
              "macbook-air.local colon 8999.");
}

TEST(SpokenAddress, withoutANetworkTheNameIsSaidTwice)
{
    EXPECT_EQ(spokenAddress("127.0.0.1", "macbook-air.local", 8999),
              "Orvalen screen stream online. Open phone browser and type: macbook-air.local colon 8999. Or, "
              "macbook-air.local colon 8999.");
}

TEST(SpokenAddress, thePortIsWhateverIsKnown)
{
    EXPECT_EQ(spokenAddress("10.0.0.5", "laptop.local", -1),
              "Orvalen screen stream online. Open phone browser and type: 10 dot 0 dot 0 dot 5 colon -1. Or, "
              "laptop.local colon -1.");
}

} // namespace
} // namespace orvalen
