#include "bench/stream_viewer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <optional>

#include "bench/stream_clock.h"
#include "bench/stream_stamp.h"

namespace orvalen::bench {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view headEnd = "\r\n\r\n";
constexpr std::size_t largestFrame = std::size_t{64} << 20;
constexpr std::size_t endSize = StreamStamp::segmentSize + 2 + 2; // stamp, last marker, line end

/// Enough of a picture to read the clock at its top.
constexpr std::size_t clockStart = 15'000;

std::int64_t now()
{
    return std::chrono::nanoseconds(std::chrono::system_clock::now().time_since_epoch()).count();
}

std::optional<std::size_t> lengthIn(std::string_view head, bool isStrict)
{
    constexpr std::string_view ours = "--FRAME\r\nContent-Type: image/jpeg\r\nContent-Length: ";
    constexpr std::string_view anyone = "Content-Length:";
    const auto at = isStrict ? (head.starts_with(ours) ? ours.size() : head.npos) : head.find(anyone);
    if (at == head.npos)
        return std::nullopt;
    std::string_view digits = isStrict ? head.substr(at) : head.substr(at + anyone.size());
    while (!isStrict && digits.starts_with(' '))
        digits.remove_prefix(1);
    std::size_t length = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), length);
    const auto rest = digits.substr(static_cast<std::size_t>(result.ptr - digits.data()));
    if (result.ec != std::errc() || length > largestFrame || (isStrict && !rest.empty()))
        return std::nullopt;
    return length;
}

} // namespace

bool StreamViewer::connect(const Request &wanted)
{
    drop();
    request = wanted;
    socket = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (socket < 0)
        return false;
    if (request.receiveBuffer > 0)
        ::setsockopt(socket, SOL_SOCKET, SO_RCVBUF, &request.receiveBuffer, sizeof request.receiveBuffer);
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(request.port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    begunAt = Clock::now();
    firstAfter = std::chrono::duration<double>(-1);
    state = State::connecting;
    if (::connect(socket, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 || errno == EINPROGRESS)
        return true;
    close("cannot connect");
    return false;
}

bool StreamViewer::ask()
{
    int error = 0;
    socklen_t size = sizeof error;
    ::getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &size);
    const std::string text = "GET " + request.path + " HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(request.port) +
                             "\r\nAccept: image/*\r\nConnection: close\r\n\r\n";
    if (error != 0 || ::send(socket, text.data(), text.size(), MSG_NOSIGNAL) != static_cast<ssize_t>(text.size())) {
        close("cannot connect");
        return false;
    }
    state = State::answer;
    return true;
}

void StreamViewer::drop()
{
    if (socket >= 0)
        ::close(socket);
    socket = -1;
    first = last = 0;
    lastIdentity.clear();
}

void StreamViewer::begin()
{
    seen = {};
    lastFrame = Clock::now();
}

std::size_t StreamViewer::look(std::size_t limit)
{
    taken = 0;
    while (taken < limit && step(limit) == Step::forward) {
    }
    seen.bytes += taken;
    return taken;
}

StreamViewer::Step StreamViewer::step(std::size_t limit)
{
    switch (state) {
    case State::connecting:
        return Step::wait;
    case State::answer:
        return readAnswer();
    case State::partHead:
        return readPartHead();
    case State::frameStart:
        return readFrameStart();
    case State::body:
        return discard(limit);
    case State::frameEnd:
        return readFrameEnd();
    }
    return Step::closed;
}

StreamViewer::Step StreamViewer::close(std::string_view reason)
{
    why = reason;
    drop();
    return Step::closed;
}

/// Makes at least `atLeast` bytes pending, if they have come; takes more as far as one call gives it.
StreamViewer::Step StreamViewer::receive(std::size_t atLeast, std::size_t atMost)
{
    if (pending().size() >= atLeast)
        return Step::forward;
    if (first > 0) {
        std::memmove(buffer.data(), buffer.data() + first, last - first);
        last -= first;
        first = 0;
    }
    const ssize_t count = ::recv(socket, buffer.data() + last, std::min(atMost, buffer.size()) - last, 0);
    if (count == 0)
        return close("closed by the server");
    if (count < 0)
        return errno == EAGAIN || errno == EINTR ? Step::wait : close("connection lost");
    last += static_cast<std::size_t>(count);
    taken += static_cast<std::size_t>(count);
    return pending().size() >= atLeast ? Step::forward : Step::wait;
}

StreamViewer::Step StreamViewer::readAnswer()
{
    const auto end = pending().find(headEnd);
    if (end == std::string_view::npos)
        return pending().size() >= 2048 ? close("answer too long") : receive(pending().size() + 1, 2048);
    if (!pending().starts_with("HTTP/1.") || pending().substr(8, 5) != " 200 ")
        return close("not a stream");
    first += end + headEnd.size();
    state = State::partHead;
    return Step::forward;
}

StreamViewer::Step StreamViewer::readPartHead()
{
    while (!request.isStrict && pending().starts_with(lineEnd))
        first += lineEnd.size();
    const auto end = pending().find(headEnd);
    if (end == std::string_view::npos)
        return pending().size() >= 512 ? close("part's head too long") : receive(pending().size() + 1, 512);
    const auto length = lengthIn(pending().substr(0, end), request.isStrict);
    if (!length)
        return close("part's head is wrong");
    first += end + headEnd.size();
    frameSize = *length;
    if (frameSize < StreamStamp::startOfImage.size() + endSize) {
        ++seen.empty;
        return close("empty frame");
    }
    state = State::frameStart;
    return Step::forward;
}

std::size_t StreamViewer::startSize() const
{
    const std::size_t wanted = request.freshness == Freshness::clock ? clockStart : 2 + StreamStamp::segmentSize;
    return std::min(wanted, frameSize - (endSize - lineEnd.size()));
}

StreamViewer::Step StreamViewer::readFrameStart()
{
    const std::size_t size = startSize();
    if (const Step got = receive(size, size); got != Step::forward)
        return got;
    const std::string_view start = pending().substr(0, size);
    startsWell = start.starts_with(StreamStamp::startOfImage);
    startStamp.clear();
    identity.clear();
    takenAt = 0;
    if (request.freshness == Freshness::clock) {
        if (const auto time = stream_clock::read(start, now() / 1'000'000)) {
            takenAt = *time * 1'000'000;
            identity = std::to_string(*time);
        }
    } else if (const auto stamp = StreamStamp::read(start.substr(2, StreamStamp::segmentSize))) {
        takenAt = stamp->takenAt;
        startStamp = start.substr(2, StreamStamp::segmentSize);
        identity = startStamp;
    }
    first += size;
    bodyLeft = frameSize - size - (endSize - lineEnd.size());
    state = State::body;
    return Step::forward;
}

StreamViewer::Step StreamViewer::discard(std::size_t limit)
{
    const std::size_t pendingPart = std::min(bodyLeft, pending().size());
    first += pendingPart;
    bodyLeft -= pendingPart;
    if (bodyLeft > 0) {
        const ssize_t count = ::recv(socket, nullptr, std::min(bodyLeft, limit - taken), MSG_TRUNC);
        if (count == 0)
            return close("closed by the server");
        if (count < 0)
            return errno == EAGAIN || errno == EINTR ? Step::wait : close("connection lost");
        bodyLeft -= static_cast<std::size_t>(count);
        taken += static_cast<std::size_t>(count);
    }
    if (bodyLeft == 0)
        state = State::frameEnd;
    return Step::forward;
}

StreamViewer::Step StreamViewer::readFrameEnd()
{
    if (const Step got = receive(endSize, endSize); got != Step::forward)
        return got;
    const std::string_view end = pending().substr(0, endSize);
    const std::string_view stamp = end.substr(0, StreamStamp::segmentSize);
    const bool sameStamp = startStamp.empty() ? !StreamStamp::read(stamp) : stamp == startStamp;
    const bool endsWell = end.substr(StreamStamp::segmentSize).starts_with(StreamStamp::endOfImage);
    if (!end.ends_with(lineEnd))
        return close("no line end behind a frame");
    first += endSize;
    state = State::partHead;
    frameEnded(startsWell && sameStamp && endsWell);
    return Step::forward;
}

void StreamViewer::frameEnded(bool isWhole)
{
    const auto time = Clock::now();
    ++everSeen;
    ++seen.frames;
    seen.torn += !isWhole;
    if (firstAfter.count() < 0)
        firstAfter = time - begunAt;
    seen.longestGap = std::max(seen.longestGap, std::chrono::duration<double>(time - lastFrame));
    lastFrame = time;
    if (takenAt == 0) {
        ++seen.unread;
        return;
    }
    seen.fresh += identity != lastIdentity;
    lastIdentity = identity;
    seen.ages.push_back(static_cast<float>(static_cast<double>(now() - takenAt) * 1e-6));
}

} // namespace orvalen::bench
