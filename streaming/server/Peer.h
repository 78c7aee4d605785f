#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <span>

#include <sys/uio.h>

#include "streaming/server/Contract.h"
#include "streaming/server/Descriptor.h"

namespace orvalen {

/// How long a connection is borne with.
struct Patience
{
    std::chrono::nanoseconds request = limits::requestTime;
    std::chrono::nanoseconds sending = limits::sendingTime;
    std::chrono::nanoseconds sendingGlance = limits::sendingGlance;
    std::chrono::nanoseconds part = limits::partTime;
    std::chrono::nanoseconds hurriedPart = limits::hurriedPartTime;
    std::size_t heldBytes = limits::heldBytes;
    std::chrono::nanoseconds farewell = limits::farewellTime;
};

/// The other end of a connection. One thread. No call waits longer than our patience with a peer that does nothing.
class Peer
{
public:
    using Clock = std::chrono::steady_clock;

    Peer(Descriptor socket, const Patience &patience);

    /// Waits for bytes and reads what there is: how many; 0 if no more will come, −1 if the time is up.
    [[nodiscard]] std::ptrdiff_t receive(std::span<char> room, Clock::time_point deadline);

    /// Sends all pieces, which are used up. False if the peer is gone, takes nothing, or takes too long; `mustHurry`,
    /// asked now and then while the peer takes long, makes that sooner.
    [[nodiscard]] bool send(std::span<iovec> pieces, const std::function<bool()> &mustHurry = {});

    /// From now on frames are sent: each goes at once, and little of what the peer does not take lies waiting.
    void expectFrames();

    /// Waits until the peer has taken nearly all that was sent, so that what is sent next reaches it soon.
    [[nodiscard]] bool waitUntilTaken();

    /// Does nothing for a while; false as soon as the connection is known to be broken.
    [[nodiscard]] bool rest(std::chrono::milliseconds duration);

    /// The peer has closed its direction. What it said in between is thrown away.
    [[nodiscard]] bool hasSaidGoodbye();

    /// Tells the peer that nothing more comes, and lets it read the last of it: closed at once, with unread bytes from
    /// the peer, the connection would be reset and the answer lost.
    void sayGoodbye();

    /// However the connection is closed from now on, the peer sees it break, and what is still unsent is dropped.
    void breakOffWhenClosed();

private:
    bool waitUntilWritable(const std::function<bool()> &isInTime = {});
    void limitUnsent(int bytes);
    [[nodiscard]] int unacknowledged() const;

    Descriptor socket;
    const Patience &patience;
    bool expectsFrames = false;
};

} // namespace orvalen
