#include "platform/posix/StreamSocket.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <string>

#include <netinet/in.h>
#include <unistd.h>

namespace orvalen {
namespace {

/// Two ends of a connection over the loopback, with as little room for what is not read as the system allows.
class StreamSocketTest : public testing::Test
{
protected:
    StreamSocketTest()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
        const int little = 4096;
        ::setsockopt(listener, SOL_SOCKET, SO_RCVBUF, &little, sizeof little);
        EXPECT_EQ(::bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(listener, 1), 0);
        EXPECT_EQ(::getsockname(listener, reinterpret_cast<sockaddr *>(&address), &size), 0);
        ours = ::socket(AF_INET, SOCK_STREAM, 0);
        EXPECT_EQ(::connect(ours, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
        theirs = ::accept(listener, nullptr, nullptr);
        EXPECT_GE(theirs, 0);
        ::close(listener);
        stream_socket::quieten(ours);
    }
    ~StreamSocketTest() override
    {
        ::close(ours);
        closeTheirs();
    }

    void closeTheirs()
    {
        if (theirs >= 0)
            ::close(theirs);
        theirs = -1;
    }

    [[nodiscard]] ssize_t send(std::string text) const
    {
        iovec piece{text.data(), text.size()};
        msghdr message{};
        message.msg_iov = &piece;
        message.msg_iovlen = 1;
        return stream_socket::sendNow(ours, message);
    }

    int ours = -1;
    int theirs = -1;
};

TEST_F(StreamSocketTest, whatFitsIsSentAtOnceAndTheRestIsRefusedWithoutWaiting)
{
    EXPECT_EQ(send("hello"), 5);
    char read[5];
    EXPECT_EQ(::recv(theirs, read, sizeof read, MSG_WAITALL), 5);
    EXPECT_EQ(std::string(read, sizeof read), "hello");

    ssize_t sent = 0;
    while ((sent = send(std::string(65536, 'x'))) > 0) {
    }
    EXPECT_EQ(sent, -1);
    EXPECT_EQ(errno, EAGAIN);
}

TEST_F(StreamSocketTest, whatThePeersSystemHasNotTakenIsUnacknowledged)
{
    EXPECT_EQ(stream_socket::unacknowledged(ours), 0);
    ssize_t total = 0;
    for (ssize_t sent = 0; (sent = send(std::string(65536, 'x'))) > 0;)
        total += sent;
    const auto left = stream_socket::unacknowledged(ours);
    ASSERT_TRUE(left);
    EXPECT_GT(*left, 0);
    EXPECT_LE(*left, total);

    std::string room(static_cast<std::size_t>(total), '\0');
    EXPECT_EQ(::recv(theirs, room.data(), room.size(), MSG_WAITALL), total);
    EXPECT_LT(stream_socket::unacknowledged(ours), left);
}

TEST_F(StreamSocketTest, ofWhatIsNoSocketNothingIsKnown)
{
    EXPECT_EQ(stream_socket::unacknowledged(-1), std::nullopt);
}

TEST_F(StreamSocketTest, aPeerThatIsGoneIsAnErrorAndNoSignal)
{
    ASSERT_NE(std::signal(SIGPIPE, SIG_DFL), SIG_ERR); // which would end us
    const linger atOnce{1, 0};
    ::setsockopt(theirs, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce); // by a reset
    closeTheirs();
    while (send("x") > 0 || errno == ECONNRESET) {
    }
    EXPECT_EQ(errno, EPIPE);
}

} // namespace
} // namespace orvalen
