#include "platform/posix/TerminationSignals.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <unistd.h>

namespace orvalen {
namespace {

bool isReadable(int descriptor)
{
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, 0) == 1;
}

constexpr std::array all = {SIGTERM, SIGINT, SIGHUP};

TEST(TerminationSignals, areKeptUntilSomebodyLooks)
{
    const TerminationSignals signals;
    ASSERT_GE(signals.descriptor(), 0);
    signals.attend();
    EXPECT_FALSE(isReadable(signals.descriptor()));
    for (const int signal : all) {
        ASSERT_EQ(raise(signal), 0);
        ASSERT_TRUE(isReadable(signals.descriptor()));
        char byte = 0;
        EXPECT_EQ(read(signals.descriptor(), &byte, 1), 1);
        EXPECT_FALSE(isReadable(signals.descriptor()));
    }
}

TEST(TerminationSignalsDeathTest, endTheProcessWithNoughtWhileNobodyAttends)
{
    for (const int signal : all)
        EXPECT_EXIT(
            {
                const TerminationSignals signals;
                raise(signal);
                std::_Exit(1);
            },
            ::testing::ExitedWithCode(0), "^$");
}

TEST(TerminationSignalsDeathTest, endTheProcessWithNoughtWhenTheyComeAgain)
{
    for (const int signal : all)
        EXPECT_EXIT(
            {
                const TerminationSignals signals;
                signals.attend();
                for (const int each : all)
                    raise(each);
                if (!isReadable(signals.descriptor()))
                    std::_Exit(1); // one of each is told of
                raise(signal);
                std::_Exit(2);
            },
            ::testing::ExitedWithCode(0), "^$");
}

} // namespace
} // namespace orvalen
