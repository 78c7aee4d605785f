#include "streaming/server/Peer.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <optional>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>

#include "platform/posix/StreamSocket.h"

namespace orvalen {

namespace {

/// The options make a connection better; without them it works, too.
template <typename Value>
void setOption(const Descriptor &socket, int level, int option, const Value &value)
{
    ::setsockopt(socket.get(), level, option, &value, sizeof value);
}

/// Like poll(2) on one descriptor, until `deadline`: the events, or 0 in time.
short waitFor(const Descriptor &socket, short events, Peer::Clock::time_point deadline)
{
    for (;;) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Peer::Clock::now()).count();
        pollfd waiting{socket.get(), events, 0};
        const int ready = ::poll(&waiting, 1, static_cast<int>(std::clamp<long long>(left, 0, 1'000'000)));
        if (ready > 0)
            return waiting.revents;
        if (ready == 0 && left <= 1'000'000)
            return 0;
        if (ready < 0 && errno != EINTR)
            return POLLERR;
    }
}

/// Leaves what has not been sent of the pieces; false if that is nothing.
bool advance(std::span<iovec> &pieces, std::size_t sent)
{
    while (!pieces.empty() && sent >= pieces.front().iov_len) {
        sent -= pieces.front().iov_len;
        pieces = pieces.subspan(1);
    }
    if (pieces.empty())
        return false;
    pieces.front().iov_base = static_cast<char *>(pieces.front().iov_base) + sent;
    pieces.front().iov_len -= sent;
    return true;
}

} // namespace

Peer::Peer(Descriptor socket, const Patience &patience) : socket(std::move(socket)), patience(patience)
{
    setOption(this->socket, SOL_SOCKET, SO_KEEPALIVE, 1);
    stream_socket::quieten(this->socket.get());
}

std::ptrdiff_t Peer::receive(std::span<char> room, Clock::time_point deadline)
{
    for (;;) {
        const auto got = ::recv(socket.get(), room.data(), room.size(), MSG_DONTWAIT);
        if (got >= 0)
            return got;
        if (errno == EINTR)
            continue;
        if (errno != EAGAIN)
            return 0;
        if (waitFor(socket, POLLIN, deadline) == 0)
            return -1;
    }
}

bool Peer::send(std::span<iovec> pieces, const std::function<bool()> &mustHurry)
{
    const auto began = Clock::now();
    const auto isInTime = [&] {
        const auto duration = Clock::now() - began;
        return duration < patience.part && (duration < patience.hurriedPart || !mustHurry || !mustHurry());
    };
    bool isLimited = expectsFrames;
    for (;;) {
        msghdr message = {};
        message.msg_iov = pieces.data();
        message.msg_iovlen = static_cast<decltype(message.msg_iovlen)>(pieces.size());
        const auto sent = stream_socket::sendNow(socket.get(), message);
        if (sent < 0 && errno == EINTR)
            continue;
        if (sent < 0 && errno != EAGAIN)
            return false;
        if (!advance(pieces, sent > 0 ? static_cast<std::size_t>(sent) : 0))
            break;
        if (isLimited) {
            // What was begun goes to the kernel as far as there is room. There often is for all of it, and then a slow
            // peer keeps none of our memory; where there is less, it keeps the frame until it is in time no more.
            limitUnsent(0);
            isLimited = false;
        } else if (!waitUntilWritable(isInTime)) {
            return false;
        }
    }
    if (expectsFrames && !isLimited)
        limitUnsent(limits::unsentBytes);
    return true;
}

void Peer::expectFrames()
{
    expectsFrames = true;
    setOption(socket, IPPROTO_TCP, TCP_NODELAY, 1);
    limitUnsent(limits::unsentBytes);
}

void Peer::limitUnsent(int bytes)
{
    setOption(socket, IPPROTO_TCP, TCP_NOTSENT_LOWAT, bytes); // 0: no limit
}

bool Peer::waitUntilTaken()
{
    return waitUntilWritable();
}

int Peer::unacknowledged() const
{
    return stream_socket::unacknowledged(socket.get()).value_or(std::numeric_limits<int>::max());
}

bool Peer::waitUntilWritable(const std::function<bool()> &isInTime)
{
    std::optional<int> least; // that was unacknowledged
    auto deadline = Clock::now() + patience.sending;
    while (!isInTime || isInTime()) {
        const auto glance = Clock::now() + std::chrono::duration_cast<Clock::duration>(patience.sendingGlance);
        const auto events = waitFor(socket, POLLOUT, std::min(deadline, glance));
        if (events != 0)
            return (events & (POLLERR | POLLHUP | POLLNVAL)) == 0;
        const int left = unacknowledged();
        if (least && left < *least)
            deadline = Clock::now() + patience.sending;
        least = std::min(left, least.value_or(left));
        if (Clock::now() >= deadline)
            return false;
    }
    return false;
}

bool Peer::rest(std::chrono::milliseconds duration)
{
    return waitFor(socket, 0, Clock::now() + duration) == 0;
}

bool Peer::hasSaidGoodbye()
{
    char thrownAway[512];
    const auto got = ::recv(socket.get(), thrownAway, sizeof thrownAway, MSG_DONTWAIT);
    return got == 0 || (got < 0 && errno != EAGAIN && errno != EINTR);
}

void Peer::sayGoodbye()
{
    ::shutdown(socket.get(), SHUT_WR);
    const auto deadline = Clock::now() + std::chrono::duration_cast<Clock::duration>(patience.farewell);
    char thrownAway[2048];
    for (std::size_t total = 0; total < limits::farewellBytes;) {
        const auto got = receive(thrownAway, deadline);
        if (got <= 0 || Clock::now() >= deadline)
            break;
        total += static_cast<std::size_t>(got);
    }
}

void Peer::breakOffWhenClosed()
{
    setOption(socket, SOL_SOCKET, SO_LINGER, linger{1, 0});
}

} // namespace orvalen
