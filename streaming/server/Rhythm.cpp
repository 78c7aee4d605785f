#include "streaming/server/Rhythm.h"

#include <algorithm>

#include "streaming/server/Contract.h"

namespace orvalen {

namespace {

constexpr std::chrono::nanoseconds captureStep = contract::frameReuse - contract::framePause;
/// For a command that takes a little longer than it lately did.
constexpr std::chrono::milliseconds margin{2};

} // namespace

void CaptureTimes::add(std::chrono::nanoseconds duration)
{
    last[count++ % last.size()] = duration;
}

std::optional<std::chrono::nanoseconds> CaptureTimes::longest() const
{
    if (count == 0)
        return std::nullopt;
    return *std::max_element(last.begin(), last.begin() + static_cast<std::ptrdiff_t>(std::min(count, last.size())));
}

Rhythm rhythmFor(bool isAlone, bool hasSeenFrame, const CaptureTimes &times)
{
    const auto expected = times.longest();
    if (!isAlone || !hasSeenFrame || !expected)
        return {};
    return {std::max(captureStep - *expected - margin, std::chrono::nanoseconds(0)), captureStep};
}

} // namespace orvalen
