#pragma once

#include <optional>

#include "streaming/server/Answers.h"
#include "streaming/server/DisplayFrames.h"
#include "streaming/server/Peer.h"

namespace orvalen {

/// One request and its answer, which may be a stream that ends with the peer.
class Connection
{
public:
    /// `socket` does not block. Both others must outlive the connection.
    Connection(Descriptor socket, DisplayFrames &frames, const Patience &patience);

    void serve();

private:
    /// What the peer wants.
    struct Wish
    {
        Route route = Route::malformed;
        std::int64_t display = 1;
    };

    std::optional<Wish> hearWish();
    [[nodiscard]] bool answer(Route route);
    void stream(std::int64_t display);

    enum class Sent
    {
        frame,
        nothing,
        broken
    };
    Sent sendNext(DisplayFrames::Viewer &viewer);

    Peer peer;
    DisplayFrames &frames;
    const Patience &patience;
};

} // namespace orvalen
