#include "platform/posix/NetworkInterfacesPosix.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvalen {
namespace {

// Interfaces of all kinds stand in tests/streaming, where a network of the test's own is to be had.

TEST(NetworkInterfacesPosix, theMachineItselfIsThere)
{
    const auto interfaces = NetworkInterfacesPosix().list();
    ASSERT_TRUE(interfaces);
    const auto self = std::find_if(interfaces->begin(), interfaces->end(),
                                   [](const auto &entry) { return entry.address == "127.0.0.1"; });
    if (self == interfaces->end())
        GTEST_SKIP() << "a machine whose loopback interface is not up";
    EXPECT_TRUE(self->isUp && self->isRunning && self->isLoopback);
    EXPECT_EQ(self->family, NetworkInterface::Family::ipv4);
}

TEST(NetworkInterfacesPosix, onlyIPv4EntriesHaveAnAddressInWords)
{
    const auto interfaces = NetworkInterfacesPosix().list();
    ASSERT_TRUE(interfaces);
    for (const auto &entry : *interfaces) {
        EXPECT_FALSE(entry.name.empty());
        EXPECT_EQ(entry.address.has_value(), entry.family == NetworkInterface::Family::ipv4) << entry.name;
    }
}

} // namespace
} // namespace orvalen
