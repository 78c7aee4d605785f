#include "streaming/server/Connection.h"

#include <algorithm>
#include <array>
#include <span>

#include "streaming/server/DisplayNumber.h"

namespace orvalen {

namespace {

iovec piece(std::string_view text)
{
    return {const_cast<char *>(text.data()), text.size()}; // only read; the interface is older than const
}

} // namespace

Connection::Connection(Descriptor socket, DisplayFrames &frames, const Patience &patience)
    : peer(std::move(socket), patience), frames(frames), patience(patience)
{
}

void Connection::serve()
{
    const auto wish = hearWish();
    if (!wish)
        return;
    if (!answer(wish->route))
        peer.breakOffWhenClosed();
    else if (wish->route == Route::stream)
        stream(wish->display);
    else
        peer.sayGoodbye();
}

std::optional<Connection::Wish> Connection::hearWish()
{
    const auto deadline = Peer::Clock::now() + std::chrono::duration_cast<Peer::Clock::duration>(patience.request);
    char room[limits::requestHeadBytes]; // not cleared: pages that no request reaches are never touched
    std::size_t length = 0;
    while (length < sizeof room) {
        const auto news = std::span(room).subspan(length);
        const auto got = peer.receive(news, deadline);
        if (got <= 0)
            return length > 0 ? std::optional(Wish{Route::malformed}) : std::nullopt;
        const auto heard = std::string_view(news.data(), static_cast<std::size_t>(got));
        const bool isFirst = length == 0;
        length += heard.size();
        // One that drips in is looked at by the line: not each byte is worth reading all that came before.
        if (!isFirst && length < sizeof room && heard.find('\n') == std::string_view::npos)
            continue;
        const auto parsed = parseRequestHead({room, length});
        if (const auto *request = std::get_if<RequestHead>(&parsed))
            return Wish{routeOf(*request), displayNumber(request->query)};
        if (std::get<NoRequest>(parsed) == NoRequest::malformed)
            return Wish{Route::malformed};
        if (std::get<NoRequest>(parsed) == NoRequest::tooLarge)
            return Wish{Route::tooLarge};
        if (Peer::Clock::now() >= deadline)
            return Wish{Route::malformed};
    }
    return Wish{Route::tooLarge};
}

bool Connection::answer(Route route)
{
    const auto now = std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
    const Answer answer = answerTo(route, now);
    std::array pieces = {piece(answer.head), piece(answer.composed), piece(answer.page)};
    return peer.send(pieces);
}

void Connection::stream(std::int64_t display)
{
    auto viewer = frames.watch(display);
    peer.expectFrames();
    // A stream has no end: wherever it stops, and be it by our death, the connection is reset. A browser takes one that
    // was closed in good order for complete and keeps its last picture for good; a broken one it asks for again.
    peer.breakOffWhenClosed();
    while (peer.waitUntilTaken()) {
        const Sent sent = sendNext(viewer);
        if (sent == Sent::broken)
            return;
        if (sent == Sent::nothing) {
            // Nothing is sent that would tell of a peer that has gone.
            if (!peer.rest(contract::emptyPause) || peer.hasSaidGoodbye())
                return;
            continue;
        }
        if (!peer.rest(contract::framePause))
            return;
    }
}

Connection::Sent Connection::sendNext(DisplayFrames::Viewer &viewer)
{
    const Frame frame = viewer.nextFrame(); // held no longer than it is sent
    if (frame.isEmpty())
        return Sent::nothing;
    const auto head = partHead(frame.bytes().size());
    std::array pieces = {piece(head), piece(frame.bytes()), piece(partEnd)};
    const auto keepsTooMuch = [&frame, this] {
        return frame.isSuperseded() && Frame::supersededMemory() > patience.heldBytes;
    };
    return peer.send(pieces, keepsTooMuch) ? Sent::frame : Sent::broken;
}

} // namespace orvalen
