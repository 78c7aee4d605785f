#pragma once

#include <chrono>
#include <cstdint>

#include "streaming/server/Frame.h"

namespace orvalen {

/// What the frames of the displays come from, and the time they are measured by. Any thread; nothing throws.
class FrameSource
{
public:
    using Time = std::chrono::steady_clock::time_point;

    struct Capture
    {
        bool succeeded = false; ///< The command ran and said so.
        Frame frame;            ///< What it left behind; empty if that is nothing.
    };

    virtual ~FrameSource() = default;

    [[nodiscard]] virtual Time now() noexcept = 0;
    virtual void sleepUntil(Time time) noexcept = 0;

    /// Takes a picture of a display and waits for it. Never called for a display while it runs for that display.
    [[nodiscard]] virtual Capture capture(std::int64_t display) noexcept = 0;
};

} // namespace orvalen
