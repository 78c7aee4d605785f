#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>

namespace orvalen {

/// How long the last captures of a display took.
class CaptureTimes
{
public:
    void add(std::chrono::nanoseconds duration);

    /// The longest of the last few; std::nullopt before the first.
    [[nodiscard]] std::optional<std::chrono::nanoseconds> longest() const;

private:
    std::array<std::chrono::nanoseconds, 4> last{};
    std::size_t count = 0;
};

/// When the command of a capture is started and when its frame is handed out, counted from the moment the frame was
/// asked for.
struct Rhythm
{
    std::chrono::nanoseconds commandAfter{0};
    std::chrono::nanoseconds frameNotBefore{0};

    bool operator==(const Rhythm &) const = default;
};

/// A single viewer who gets frames at once would ask again after the pause of 80 ms, when the last capture is still
/// good to be repeated, and so see every picture twice. Capture and pause together therefore last as long as a capture
/// is good, and the command starts as late as it can: the picture is young when it is sent. Several viewers keep one
/// another's captures going and want each frame as soon as it is there, and so does one who has none yet.
[[nodiscard]] Rhythm rhythmFor(bool isAlone, bool hasSeenFrame, const CaptureTimes &times);

} // namespace orvalen
