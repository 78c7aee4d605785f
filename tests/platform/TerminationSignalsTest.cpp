#include "platform/posix/TerminationSignals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <poll.h>
#include <unistd.h>

namespace orvalen {
namespace {

bool isReadable(int descriptor)
{
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, 0) == 1;
}

TEST(TerminationSignals, areKeptUntilSomebodyLooks)
{
    const TerminationSignals signals;
    ASSERT_GE(signals.descriptor(), 0);
    EXPECT_FALSE(isReadable(signals.descriptor()));
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ASSERT_EQ(raise(signal), 0);
        ASSERT_TRUE(isReadable(signals.descriptor()));
        char byte = 0;
        EXPECT_EQ(read(signals.descriptor(), &byte, 1), 1);
        EXPECT_FALSE(isReadable(signals.descriptor()));
    }
}

} // namespace
} // namespace orvalen
