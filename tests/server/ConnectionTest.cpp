#include "streaming/server/Connection.h"

#include <algorithm>
#include <future>
#include <string>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>

#include "platform/posix/StreamSocket.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// Frames at once, in real time.
class InstantSource : public FrameSource
{
public:
    Time now() noexcept override { return std::chrono::steady_clock::now(); }
    void sleepUntil(Time time) noexcept override { std::this_thread::sleep_until(time); }
    Capture capture(std::int64_t display) noexcept override
    {
        return {true, Frame::of(display == 99 ? std::string() : picture + std::to_string(display))};
    }

    std::string picture = "picture ";
};

/// Both ends of a connection over the loopback interface.
struct Ends
{
    Ends()
    {
        const Descriptor listener(::socket(AF_INET, SOCK_STREAM, 0));
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        EXPECT_EQ(::bind(listener.get(), reinterpret_cast<sockaddr *>(&address), length), 0);
        EXPECT_EQ(::listen(listener.get(), 1), 0);
        EXPECT_EQ(::getsockname(listener.get(), reinterpret_cast<sockaddr *>(&address), &length), 0);
        client = Descriptor(::socket(AF_INET, SOCK_STREAM, 0));
        stream_socket::quieten(client.get());
        const int small = 16 * 1024;
        ::setsockopt(client.get(), SOL_SOCKET, SO_RCVBUF, &small, sizeof small);
        EXPECT_EQ(::connect(client.get(), reinterpret_cast<sockaddr *>(&address), length), 0);
        server = Descriptor(::accept(listener.get(), nullptr, nullptr));
        ::fcntl(server.get(), F_SETFL, O_NONBLOCK);
    }

    /// How much of it went from the client to the server.
    [[nodiscard]] ssize_t send(std::string_view text) const
    {
        iovec part{const_cast<char *>(text.data()), text.size()};
        msghdr message = {};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        return stream_socket::sendNow(client.get(), message);
    }

    Descriptor client;
    Descriptor server;
};

class ConnectionTest : public testing::Test
{
protected:
    ConnectionTest()
    {
        patience.farewell = 5s;
        thread = std::thread([this] {
            started.get_future().wait();
            Connection(std::move(ends.server), frames, patience).serve();
            isServed = true;
        });
    }

    ~ConnectionTest() override
    {
        ends.client = {};
        thread.join();
    }

    /// Bounds and pictures are set before.
    void serve() { started.set_value(); }

    void say(std::string_view text) { ASSERT_EQ(ends.send(text), ssize_t(text.size())); }

    /// Everything until the server closes, or `enough` has come.
    std::string hear(std::string_view enough = {})
    {
        std::string heard;
        char room[4096];
        while (enough.empty() || heard.find(enough) == std::string::npos) {
            const auto got = ::recv(ends.client.get(), room, sizeof room, 0);
            if (got <= 0)
                break;
            heard.append(room, std::size_t(got));
        }
        return heard;
    }

    /// The server has closed the connection, after whatever it had sent.
    bool isCutWithin(std::chrono::milliseconds limit)
    {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!isServed && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(5ms);
        return isServed;
    }

    InstantSource source;
    DisplayFrames frames{source};
    Patience patience;
    Ends ends;
    std::promise<void> started;
    std::atomic<bool> isServed = false;
    std::thread thread;
};

TEST_F(ConnectionTest, answersAndCloses)
{
    serve();
    say("GET /api/status HTTP/1.1\r\nHost: a\r\n\r\n");
    const auto heard = hear();
    EXPECT_THAT(heard, StartsWith("HTTP/1.0 200 OK\r\n"));
    EXPECT_THAT(heard, HasSubstr("{\"status\": \"online\", \"time\": "));
}

TEST_F(ConnectionTest, understandsARequestInPieces)
{
    serve();
    for (const char c : std::string("GET /favicon.ico?x HTTP/1.0\r\nHost: a\r\n\r\n"))
        say({&c, 1});
    EXPECT_THAT(hear(), StartsWith("HTTP/1.0 204 No Content\r\n"));
}

TEST_F(ConnectionTest, lateBytesDoNotCostTheAnswer)
{
    serve();
    say("POST / HTTP/1.1\r\nContent-Length: 100000\r\n\r\n" + std::string(100'000, 'b'));
    EXPECT_THAT(hear(), StartsWith("HTTP/1.0 501 Not Implemented\r\n"));
}

TEST_F(ConnectionTest, saysWhatIsWrong)
{
    serve();
    say("\x16\x03\x01 hello");
    EXPECT_THAT(hear(), StartsWith("HTTP/1.0 400 Bad Request\r\n"));
}

TEST_F(ConnectionTest, saysThatAHeadIsTooLarge)
{
    serve();
    say("GET / HTTP/1.1\r\nCookie: " + std::string(20'000, 'c'));
    EXPECT_THAT(hear(), StartsWith("HTTP/1.0 431 Request Header Fields Too Large\r\n"));
}

TEST_F(ConnectionTest, answersHalfARequestWithAnError)
{
    serve();
    say("GET / HT");
    ::shutdown(ends.client.get(), SHUT_WR);
    EXPECT_THAT(hear(), StartsWith("HTTP/1.0 400 Bad Request\r\n"));
}

TEST_F(ConnectionTest, whoSaysNothingIsLetGo)
{
    patience.request = 100ms;
    serve();
    EXPECT_EQ(hear(), "");
}

TEST_F(ConnectionTest, whoDripsIsLetGo)
{
    patience.request = 200ms;
    serve();
    const std::string head = "GET / HTTP/1.1\r\nCookie: " + std::string(8'000, 'c');
    std::size_t said = 0;
    while (said < head.size() && ends.send({&head[said], 1}) == 1 && !isServed) {
        ++said;
        pollfd waiting{ends.client.get(), POLLIN, 0};
        if (poll(&waiting, 1, 20) > 0)
            break;
    }
    EXPECT_LT(said, head.size());
    EXPECT_THAT(hear(), StartsWith("HTTP/1.0 400 Bad Request\r\n"));
}

TEST_F(ConnectionTest, whoStaysAfterTheAnswerIsLetGo)
{
    patience.farewell = 100ms;
    serve();
    say("GET /favicon.ico HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(isCutWithin(20s));
}

TEST_F(ConnectionTest, streamsPartsToTheByte)
{
    serve();
    say("GET /stream.mjpg?d=2&t=1 HTTP/1.1\r\n\r\n");
    const std::string part = "--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: 9\r\n\r\npicture 2\r\n";
    const auto heard = hear(part + part + part);
    const auto body = heard.find("\r\n\r\n") + 4;
    EXPECT_THAT(heard.substr(0, body), EndsWith("Content-Type: multipart/x-mixed-replace; boundary=FRAME\r\n\r\n"));
    EXPECT_THAT(heard.substr(body), StartsWith(part + part + part));
}

TEST_F(ConnectionTest, aHalfClosedViewerStillGetsItsStream)
{
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\n");
    ::shutdown(ends.client.get(), SHUT_WR);
    const std::string part = "--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: 9\r\n\r\npicture 1\r\n";
    EXPECT_THAT(hear(part + part), HasSubstr(part + part));
}

TEST_F(ConnectionTest, talkingViewersGetTheirStreamToo)
{
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\nGET / HTTP/1.1\r\n\r\n");
    const std::string part = "--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: 9\r\n\r\npicture 1\r\n";
    EXPECT_THAT(hear(part + part), HasSubstr(part + part));
}

TEST_F(ConnectionTest, aViewerThatGoesIsNoticed)
{
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\n");
    (void)hear("picture");
    ends.client = {};
    EXPECT_TRUE(isCutWithin(20s));
}

TEST_F(ConnectionTest, alsoWhenThereIsNoPicture)
{
    serve();
    say("GET /stream.mjpg?d=99 HTTP/1.1\r\n\r\n");
    EXPECT_THAT(hear("\r\n\r\n"), EndsWith("boundary=FRAME\r\n\r\n")); // and no part
    ends.client = {};
    EXPECT_TRUE(isCutWithin(20s));
}

TEST_F(ConnectionTest, aViewerThatDoesNotReadIsLetGo)
{
    source.picture.assign(8'000'000, 'p'); // more than the system keeps for anybody
    patience.sending = 300ms;
    patience.sendingGlance = 50ms;
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(isCutWithin(20s));
}

TEST_F(ConnectionTest, alsoIfTheSystemHasKeptTheFrame)
{
    source.picture.assign(100'000, 'p');
    patience.sending = 300ms;
    patience.sendingGlance = 50ms;
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(isCutWithin(20s));
}

TEST_F(ConnectionTest, aFrameIsNotHeldForEverHoweverSteadilyItDrips)
{
    source.picture.assign(8'000'000, 'p');
    patience.part = 500ms;
    patience.sendingGlance = 50ms;
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\n");
    std::size_t heard = 0;
    char room[16 * 1024];
    for (int i = 0; i < 2000 && !isServed; ++i) {
        heard += std::size_t(std::max<ssize_t>(0, ::recv(ends.client.get(), room, sizeof room, MSG_DONTWAIT)));
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_TRUE(isServed);
    EXPECT_GT(heard, 0U);
    EXPECT_LT(heard, source.picture.size());
}

TEST_F(ConnectionTest, whoHoldsAnOldFrameIsLetGoWhenTooMuchIsHeld)
{
    source.picture.assign(8'000'000, 'p');
    patience.hurriedPart = 100ms;
    patience.sendingGlance = 20ms;
    patience.heldBytes = 12'000'000;
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\n");
    (void)hear("ppp"); // and reads no more
    auto other = frames.watch(1);
    const auto nextFrame = [&] {
        std::this_thread::sleep_for(contract::frameReuse);
        return other.nextFrame();
    };
    EXPECT_FALSE(isCutWithin(300ms)); // its frame is the newest
    const Frame second = nextFrame();
    EXPECT_FALSE(isCutWithin(300ms)); // one that is superseded is not too much
    const Frame third = nextFrame();
    EXPECT_TRUE(second.isSuperseded());
    EXPECT_TRUE(isCutWithin(20s));
}

TEST_F(ConnectionTest, aViewerThatReadsSlowlyIsKept)
{
    source.picture.assign(200'000, 'p');
    patience.sending = 400ms;
    patience.sendingGlance = 50ms;
    serve();
    say("GET /stream.mjpg HTTP/1.1\r\n\r\n");
    // Some three seconds for a frame, with a gap every now and then.
    std::size_t heard = 0;
    char room[16 * 1024];
    while (heard < 450'000) {
        const auto got = ::recv(ends.client.get(), room, sizeof room, 0);
        ASSERT_GT(got, 0) << "after " << heard << " bytes";
        heard += std::size_t(got);
        std::this_thread::sleep_for(std::chrono::milliseconds(got / 80));
    }
    EXPECT_FALSE(isServed);
}

} // namespace
} // namespace orvalen
