#pragma once

#include <gmock/gmock.h>

#include <string>
#include <system_error>
#include <vector>

#include "tests/support/StreamFakes.h"

namespace orvalen::test {

/// For what starts a command of the system and thinks no more of it.
class CommandsTest : public ::testing::Test
{
protected:
    /// One program was started, with exactly these arguments, and nothing was done to it since: nobody has waited for
    /// it, ended it, or kept it in hand.
    void expectStarted(const std::string &program, const std::vector<std::string> &arguments)
    {
        EXPECT_THAT(diary.take(), ::testing::ElementsAre(::testing::StartsWith("launch " + program + " ")));
        ASSERT_EQ(processes.launched.size(), 1U);
        const auto &child = *processes.launched.front();
        EXPECT_EQ(child.program, program);
        EXPECT_EQ(child.arguments, arguments);
        EXPECT_TRUE(child.isRunning);
        EXPECT_FALSE(child.isHeld);
        processes.launched.clear();
    }

    /// From now on no program can be started: the system has run out of something.
    void exhaustTheSystem()
    {
        processes.onLaunch = [](const FakeChildProcesses::Child &child) {
            throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again), child.program);
        };
    }

    Diary diary;
    FakeChildProcesses processes{diary};
};

} // namespace orvalen::test
