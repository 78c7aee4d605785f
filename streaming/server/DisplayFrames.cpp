#include "streaming/server/DisplayFrames.h"

#include <utility>

namespace orvalen {

DisplayFrames::DisplayFrames(FrameSource &source, std::size_t mostDisplays)
    : source(source), mostDisplays(mostDisplays), mainDisplay(displays.try_emplace(1, 1).first->second)
{
}

DisplayFrames::Viewer DisplayFrames::watch(std::int64_t number)
{
    const std::lock_guard lock(mutex);
    auto known = displays.find(number);
    if (known == displays.end() && displays.size() < mostDisplays)
        known = displays.try_emplace(number, number).first;
    Display &display = known == displays.end() ? mainDisplay : known->second;
    ++display.viewers;
    return Viewer(*this, display);
}

DisplayFrames::Viewer::~Viewer()
{
    const std::lock_guard lock(frames.mutex);
    --display.viewers;
}

Frame DisplayFrames::Viewer::nextFrame() noexcept
{
    Frame frame = frames.next(display, hasSeenFrame);
    hasSeenFrame = hasSeenFrame || !frame.isEmpty();
    return frame;
}

Frame DisplayFrames::next(Display &display, bool hasSeenFrame) noexcept
{
    const auto arrival = source.now();
    std::unique_lock lock(mutex);
    for (;;) {
        if (display.outcomeBegan && arrival - *display.outcomeBegan < contract::frameReuse)
            return display.outcome;
        if (!display.isCapturing)
            break;
        display.captured.wait(lock);
    }
    display.isCapturing = true;
    const auto rhythm = rhythmFor(display.viewers, hasSeenFrame, display.times);
    lock.unlock();

    const auto began = source.now();
    if (rhythm.commandAfter.count() > 0)
        source.sleepUntil(began + rhythm.commandAfter);
    const auto commandBegan = source.now();
    FrameSource::Capture capture = source.capture(display.number);
    const auto commandEnded = source.now();
    if (!capture.succeeded)
        source.sleepUntil(commandEnded + contract::captureBackOff);
    else if (commandEnded < began + rhythm.frameNotBefore)
        source.sleepUntil(began + rhythm.frameNotBefore);

    lock.lock();
    const Frame previousFrame = display.lastFrame; // its pages are given back after the lock
    const Frame previousOutcome = std::move(display.outcome);
    if (capture.succeeded) {
        display.times.add(commandEnded - commandBegan);
        if (!capture.frame.isEmpty())
            display.lastFrame = capture.frame;
    }
    const Frame outcome = bestAfter(display, capture);
    display.outcome = outcome;
    display.outcomeBegan = began;
    display.isCapturing = false;
    lock.unlock();
    display.captured.notify_all();
    return outcome;
}

Frame DisplayFrames::bestAfter(const Display &display, const FrameSource::Capture &capture) const
{
    // A command that succeeds and leaves nothing means that there is no such display (the main display's stands in);
    // one that fails may do better next time.
    const bool leftNothing = capture.succeeded && capture.frame.isEmpty();
    if (leftNothing && display.number > 1 && !mainDisplay.lastFrame.isEmpty())
        return mainDisplay.lastFrame;
    if (!capture.succeeded && display.lastFrame.isEmpty())
        return mainDisplay.lastFrame;
    return display.lastFrame;
}

} // namespace orvalen
