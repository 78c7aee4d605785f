#include "streaming/server/Listener.h"

#include <array>
#include <filesystem>

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;

std::uint16_t portOf(const Descriptor &socket)
{
    sockaddr_in address = {};
    socklen_t length = sizeof address;
    return getsockname(socket.get(), reinterpret_cast<sockaddr *>(&address), &length) == 0 ? ntohs(address.sin_port)
                                                                                           : 0;
}

/// A socket that listens on a port of the system's choice.
Descriptor somebodyElse()
{
    Descriptor socket(::socket(AF_INET, SOCK_STREAM, 0));
    EXPECT_EQ(listen(socket.get(), 1), 0);
    return socket;
}

std::array<std::uint16_t, 2> freePorts()
{
    const std::array sockets = {somebodyElse(), somebodyElse()};
    return {portOf(sockets[0]), portOf(sockets[1])};
}

TEST(Listener, takesTheFirstPortAndWritesItDown)
{
    const test::TemporaryFolder folder;
    const auto ports = freePorts();
    const auto socket = listenOnFirst(ports, folder / "port");
    EXPECT_EQ(portOf(socket), ports[0]);
    EXPECT_EQ(test::contentsOf(folder / "port"), std::to_string(ports[0]));
    EXPECT_EQ(fs::status(folder / "port").permissions() & (fs::perms::group_all | fs::perms::others_all),
              fs::perms::none);
}

TEST(Listener, goesOnIfAPortIsTaken)
{
    const test::TemporaryFolder folder;
    const auto other = somebodyElse();
    const std::array ports = {portOf(other), freePorts()[0]};
    folder.write("port", "a longer text from before");
    const auto socket = listenOnFirst(ports, folder / "port");
    EXPECT_EQ(portOf(socket), ports[1]);
    EXPECT_EQ(test::contentsOf(folder / "port"), std::to_string(ports[1]));
}

TEST(Listener, leavesNothingIfAllAreTaken)
{
    const test::TemporaryFolder folder;
    const auto one = somebodyElse();
    const auto other = somebodyElse();
    const std::array ports = {portOf(one), portOf(other)};
    EXPECT_FALSE(listenOnFirst(ports, folder / "port"));
    EXPECT_FALSE(fs::exists(folder / "port"));
}

TEST(Listener, givesAPortBackThatItCannotWriteDown)
{
    const test::TemporaryFolder folder;
    folder.write("target", "untouched");
    fs::create_symlink(folder / "target", folder / "port");
    const auto ports = freePorts();
    EXPECT_FALSE(listenOnFirst(ports, folder / "port"));
    EXPECT_EQ(test::contentsOf(folder / "target"), "untouched");
    EXPECT_EQ(portOf(listenOnFirst(ports, folder / "other")), ports[0]);
}

} // namespace
} // namespace orvalen
