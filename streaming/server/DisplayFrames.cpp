#include "streaming/server/DisplayFrames.h"

#include <utility>

namespace orvalen {

namespace {

/// Who asked longer ago has stalled, or gone, or reads so slowly that nobody's frames come sooner for it.
constexpr std::chrono::seconds lately{1};

} // namespace

void DisplayFrames::Askers::add(const Viewer &viewer, FrameSource::Time time)
{
    if (last.viewer != &viewer)
        lastOther = last;
    last = {&viewer, time};
}

void DisplayFrames::Askers::remove(const Viewer &viewer)
{
    if (last.viewer == &viewer)
        last = std::exchange(lastOther, {});
    else if (lastOther.viewer == &viewer)
        lastOther = {};
}

bool DisplayFrames::Askers::isAlone(const Viewer &viewer, FrameSource::Time time) const
{
    const Asker &somebodyElse = last.viewer == &viewer ? lastOther : last;
    return !somebodyElse.viewer || time - somebodyElse.time >= lately;
}

DisplayFrames::DisplayFrames(FrameSource &source, std::size_t mostDisplays, std::size_t mostMemory)
    : source(source),
      mostDisplays(mostDisplays),
      mostMemory(mostMemory),
      mainDisplay(displays.try_emplace(1, 1).first->second)
{
}

DisplayFrames::Viewer DisplayFrames::watch(std::int64_t number)
{
    const std::lock_guard lock(mutex);
    auto known = displays.find(number);
    const bool hasRoom = displays.size() < mostDisplays && memory + mainDisplay.lastFrame.memory() <= mostMemory;
    if (known == displays.end() && hasRoom)
        known = displays.try_emplace(number, number).first;
    return Viewer(*this, known == displays.end() ? mainDisplay : known->second);
}

DisplayFrames::Viewer::~Viewer()
{
    const std::lock_guard lock(frames.mutex);
    display->askers.remove(*this);
}

Frame DisplayFrames::Viewer::nextFrame() noexcept
{
    Frame frame = frames.next(*this);
    hasSeenFrame = hasSeenFrame || !frame.isEmpty();
    return frame;
}

Frame DisplayFrames::next(Viewer &viewer) noexcept
{
    const auto arrival = source.now();
    Frame replaced; // its pages are given back after the lock
    std::unique_lock lock(mutex);
    viewer.display->askers.add(viewer, arrival);
    for (;;) {
        if (viewer.display->hasNoRoom) {
            viewer.display->askers.remove(viewer);
            viewer.display = &mainDisplay;
            viewer.display->askers.add(viewer, arrival);
        }
        Display &display = *viewer.display;
        if (display.outcomeBegan && arrival - *display.outcomeBegan < contract::frameReuse)
            return display.outcome->lastFrame;
        if (display.isCapturing) {
            display.captured.wait(lock);
        } else {
            const bool isAlone = display.askers.isAlone(viewer, arrival);
            replaced = capture(display, rhythmFor(isAlone, viewer.hasSeenFrame, display.times), lock);
        }
    }
}

/// Gives the lock away while it captures. The frame that the new one replaced.
Frame DisplayFrames::capture(Display &display, const Rhythm &rhythm, std::unique_lock<std::mutex> &lock) noexcept
{
    display.isCapturing = true;
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
    const bool hasLeftNothing = capture.succeeded && capture.frame.isEmpty();
    Frame replaced;
    if (capture.succeeded) {
        display.times.add(commandEnded - commandBegan);
        if (!hasLeftNothing)
            replaced = keep(display, std::move(capture.frame));
    }
    display.outcome = &bestAfter(display, capture.succeeded, hasLeftNothing);
    display.outcomeBegan = began;
    display.isCapturing = false;
    display.captured.notify_all();
    return replaced;
}

Frame DisplayFrames::keep(Display &display, Frame frame)
{
    memory -= display.lastFrame.memory();
    // Room for the main display there is always: all others may have to show it.
    display.hasNoRoom = &display != &mainDisplay && memory + frame.memory() > mostMemory;
    if (display.hasNoRoom)
        frame = {};
    memory += frame.memory();
    display.lastFrame.supersede();
    return std::exchange(display.lastFrame, std::move(frame));
}

const DisplayFrames::Display &DisplayFrames::bestAfter(const Display &display, bool hasSucceeded,
                                                       bool hasLeftNothing) const
{
    // A command that succeeds and leaves nothing means that there is no such display (the main display's stands in);
    // one that fails may do better next time.
    if (hasLeftNothing && display.number > 1 && !mainDisplay.lastFrame.isEmpty())
        return mainDisplay;
    if (!hasSucceeded && display.lastFrame.isEmpty())
        return mainDisplay;
    return display;
}

} // namespace orvalen
