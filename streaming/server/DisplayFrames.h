#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

#include "streaming/server/Contract.h"
#include "streaming/server/Frame.h"
#include "streaming/server/FrameSource.h"
#include "streaming/server/Rhythm.h"

namespace orvalen {

/// The frames of all displays, shared by all viewers. A display is captured by one viewer at a time and for all who ask
/// meanwhile; a capture that failed rests before anybody tries again. Any thread.
class DisplayFrames
{
    struct Display;

public:
    /// Somebody who looks at a display. One thread at a time; must not outlive the frames.
    class Viewer
    {
    public:
        Viewer(const Viewer &) = delete;
        Viewer &operator=(const Viewer &) = delete;
        ~Viewer();

        /// The newest frame: one that began to be captured less than 0.1 s before this call, or a new one. If the
        /// capture fails or leaves nothing: the display's last frame, the main display's, or an empty one. Blocks
        /// while the display is captured and while a failure rests.
        [[nodiscard]] Frame nextFrame() noexcept;

    private:
        friend class DisplayFrames;
        Viewer(DisplayFrames &frames, Display &display) : frames(frames), display(display) {}

        DisplayFrames &frames;
        Display &display;
        bool hasSeenFrame = false;
    };

    explicit DisplayFrames(FrameSource &source, std::size_t mostDisplays = limits::displays);

    /// A viewer of the display with this number, which may be any. Once there are as many displays as are kept, the
    /// main display stands in for the numbers that are not among them.
    [[nodiscard]] Viewer watch(std::int64_t number);

private:
    struct Display
    {
        explicit Display(std::int64_t number) : number(number) {}

        const std::int64_t number;
        int viewers = 0;
        bool isCapturing = false;
        Frame lastFrame; ///< The last that was captured of this display.
        Frame outcome;   ///< What the last capture, good or bad, handed out.
        std::optional<FrameSource::Time> outcomeBegan;
        CaptureTimes times;
        std::condition_variable captured;
    };

    Frame next(Display &display, bool hasSeenFrame) noexcept;
    Frame bestAfter(const Display &display, const FrameSource::Capture &capture) const;

    FrameSource &source;
    const std::size_t mostDisplays;
    std::mutex mutex; ///< Never held while a capture runs.
    std::map<std::int64_t, Display> displays;
    Display &mainDisplay;
};

} // namespace orvalen
