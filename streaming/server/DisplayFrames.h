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
        Viewer(DisplayFrames &frames, Display &display) : frames(frames), display(&display) {}

        DisplayFrames &frames;
        Display *display;
        bool hasSeenFrame = false;
    };

    explicit DisplayFrames(FrameSource &source, std::size_t mostDisplays = limits::displays,
                           std::size_t mostMemory = limits::allFramesBytes);

    /// A viewer of the display with this number, which may be any. Once there are as many displays as are kept, or
    /// their last frames take as much memory as they may, the main display stands in for the numbers that are not
    /// among them, and for those whose frame finds no room.
    [[nodiscard]] Viewer watch(std::int64_t number);

private:
    /// The two who lately asked for a frame of a display: enough to know whether anybody is alone with it. A viewer
    /// that is connected and does not ask counts for nothing.
    class Askers
    {
    public:
        void add(const Viewer &viewer, FrameSource::Time time);
        void remove(const Viewer &viewer);
        [[nodiscard]] bool isAlone(const Viewer &viewer, FrameSource::Time time) const;

    private:
        struct Asker
        {
            const Viewer *viewer = nullptr;
            FrameSource::Time time{};
        };
        Asker last;
        Asker lastOther;
    };

    struct Display
    {
        explicit Display(std::int64_t number) : number(number) {}

        const std::int64_t number;
        Askers askers;
        bool isCapturing = false;
        bool hasNoRoom = false;           ///< From now on it shows the main display.
        Frame lastFrame;                  ///< The last that was captured of this display.
        const Display *outcome = nullptr; ///< Whose last frame the last capture, good or bad, handed out.
        std::optional<FrameSource::Time> outcomeBegan;
        CaptureTimes times;
        std::condition_variable captured;
    };

    Frame next(Viewer &viewer) noexcept;
    Frame capture(Display &display, const Rhythm &rhythm, std::unique_lock<std::mutex> &lock) noexcept;
    Frame keep(Display &display, Frame frame);
    const Display &bestAfter(const Display &display, bool hasSucceeded, bool hasLeftNothing) const;

    FrameSource &source;
    const std::size_t mostDisplays;
    const std::size_t mostMemory;
    std::size_t memory = 0; ///< Of the last frames of all displays.
    std::mutex mutex;       ///< Never held while a capture runs.
    std::map<std::int64_t, Display> displays;
    Display &mainDisplay;
};

} // namespace orvalen
