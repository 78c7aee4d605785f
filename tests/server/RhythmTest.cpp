#include "streaming/server/Rhythm.h"

#include <gtest/gtest.h>

#include "streaming/server/Contract.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;

CaptureTimes lately(std::initializer_list<std::chrono::nanoseconds> durations)
{
    CaptureTimes times;
    for (const auto duration : durations)
        times.add(duration);
    return times;
}

TEST(Rhythm, captureAndPauseOfALoneViewerLastAsLongAsACaptureIsGood)
{
    const auto rhythm = rhythmFor(true, true, lately({8ms}));
    EXPECT_EQ(rhythm.frameNotBefore + contract::framePause, contract::frameReuse);
}

TEST(Rhythm, theCommandStartsAsLateAsItLatelyTook)
{
    EXPECT_EQ(rhythmFor(true, true, lately({8ms})).commandAfter, 10ms);
    EXPECT_EQ(rhythmFor(true, true, lately({8ms, 12ms, 7ms})).commandAfter, 6ms);
    EXPECT_EQ(rhythmFor(true, true, lately({500ms, 8ms, 8ms, 8ms, 8ms})).commandAfter, 10ms); // that was long ago
}

TEST(Rhythm, aSlowCommandStartsAtOnce)
{
    EXPECT_EQ(rhythmFor(true, true, lately({18ms})).commandAfter, 0ms);
    EXPECT_EQ(rhythmFor(true, true, lately({400ms})).commandAfter, 0ms);
}

TEST(Rhythm, nobodyElseIsHeldUp)
{
    EXPECT_EQ(rhythmFor(false, true, lately({8ms})), Rhythm());
    EXPECT_EQ(rhythmFor(true, false, lately({8ms})), Rhythm()); // waits for a first frame
    EXPECT_EQ(rhythmFor(true, true, lately({})), Rhythm());
}

} // namespace
} // namespace orvalen
