#include "platform/posix/WholeFile.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "tests/platform/macos/fakes/Calls.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

int fullSyncError = 0;
int syncError = 0;

class WholeFileOnAMac : public ::testing::Test
{
protected:
    WholeFileOnAMac()
    {
        fullSyncError = syncError = 0;
        static_cast<void>(fake::takeCalls());
    }
};

TEST_F(WholeFileOnAMac, isBroughtToTheMediumItself)
{
    EXPECT_EQ(whole_file::sync(5), 0);
    EXPECT_THAT(fake::takeCalls(), ElementsAre("fcntl 5 51"));
}

TEST_F(WholeFileOnAMac, goesAsFarAsItsFileSystemKnowsHow)
{
    for (const int refusal : {ENOTSUP, EINVAL, ENOTTY}) {
        fullSyncError = refusal;
        EXPECT_EQ(whole_file::sync(5), 0) << refusal;
        EXPECT_THAT(fake::takeCalls(), ElementsAre("fcntl 5 51", "fsync 5")) << refusal;
    }
    syncError = EIO;
    EXPECT_EQ(whole_file::sync(5), EIO);
}

TEST_F(WholeFileOnAMac, anErrorOfTheMediumIsNotLostInASecondTry)
{
    for (const int error : {EIO, ENOSPC, EDQUOT}) {
        fullSyncError = error;
        EXPECT_EQ(whole_file::sync(5), error);
        EXPECT_THAT(fake::takeCalls(), ElementsAre("fcntl 5 51")) << error;
    }
}

int answer(int error)
{
    errno = error;
    return error == 0 ? 0 : -1;
}

} // namespace
} // namespace orvalen

// The linker sends the calls of this program here.
extern "C" {

int __wrap_fcntl(int descriptor, int command, ...)
{
    orvalen::fake::note("fcntl %d %d", descriptor, command);
    return orvalen::answer(orvalen::fullSyncError);
}

int __wrap_fsync(int descriptor)
{
    orvalen::fake::note("fsync %d", descriptor);
    return orvalen::answer(orvalen::syncError);
}
}
