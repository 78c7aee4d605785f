#include "platform/macos/HostNameScutil.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>

#include <unistd.h>

#include "streaming/StreamAddresses.h"
#include "tests/support/StreamFakes.h"

namespace orvalen {
namespace {

using ::testing::ElementsAre;

/// What the system knows of the host's name, in the place of its own answer.
struct KnownHost
{
    std::string name;
    int status = 0;
    std::size_t room = 0; ///< How much there was, the last time.
};

KnownHost &knownHost()
{
    static KnownHost host;
    return host;
}

} // namespace
} // namespace orvalen

/// In the place of the system's: what fits, and an end only if there is room for that, too. (Systems differ in what
/// they do with a name that is too long; this is the least that they promise.)
extern "C" int gethostname(char *name, std::size_t size) noexcept(noexcept(::gethostname(name, size)))
{
    auto &host = orvalen::knownHost();
    host.room = size;
    std::memcpy(name, host.name.c_str(), std::min(size, host.name.size() + 1));
    return host.status;
}

namespace orvalen {
namespace {

class HostNameScutilTest : public ::testing::Test
{
protected:
    static inline const std::string question = "/usr/sbin/scutil --get LocalHostName";

    HostNameScutilTest() { knownHost() = {}; }

    test::Diary diary;
    test::FakeChildProcesses processes{diary};
    HostNameScutil host{processes};
};

TEST_F(HostNameScutilTest, asksForTheLocalHostNameAndPassesTheAnswerOnAsItCame)
{
    processes.outputs[question] = "MacBook-Air\n";
    EXPECT_EQ(host.multicastName(), "MacBook-Air\n");
    EXPECT_THAT(diary.take(), ElementsAre("output of " + question));
    EXPECT_EQ(bonjourHost("MacBook-Air\n", ""), "macbook-air.local") << "what becomes of it";
}

TEST_F(HostNameScutilTest, whatIsNoNameIsPassedOnToo)
{
    for (const auto *const output : {" \n", "\xff\xfe\n", "B\xC3\xBCro\n"}) {
        processes.outputs[question] = output;
        EXPECT_EQ(host.multicastName(), output);
    }
}

TEST_F(HostNameScutilTest, anEmptyAnswerIsNone)
{
    EXPECT_EQ(host.multicastName(), std::nullopt);
    EXPECT_THAT(diary.take(), ElementsAre("output of " + question));
}

TEST_F(HostNameScutilTest, aCommandThatIsNotThereAnswersNothing)
{
    processes.missing.insert("/usr/sbin/scutil");
    EXPECT_EQ(host.multicastName(), std::nullopt);
}

TEST_F(HostNameScutilTest, waitsHalfASecondAtMostForNoMoreThanAName)
{
    (void)host.multicastName();
    ASSERT_EQ(processes.outputLimits.size(), 1U);
    EXPECT_EQ(processes.outputLimits.front().time, std::chrono::milliseconds(500));
    EXPECT_EQ(processes.outputLimits.front().bytes, HostNameScutil::longestOutput);
}

TEST_F(HostNameScutilTest, theProcesssNameIsTheSystemsWithItsDomain)
{
    knownHost().name = "MacBook-Air.fritz.box";
    EXPECT_EQ(host.processName(), "MacBook-Air.fritz.box");
    EXPECT_THAT(diary.take(), ElementsAre()) << "no command is needed";
}

TEST_F(HostNameScutilTest, theLongestNameOfASystemFits)
{
    knownHost().name = std::string(255, 'n');
    EXPECT_EQ(host.processName(), std::string(255, 'n'));
    EXPECT_EQ(knownHost().room, 256U) << "systems refuse to write into less than they might need";
}

TEST_F(HostNameScutilTest, aNameThatWasCutOffEndsWhereItWasCut)
{
    knownHost().name = std::string(5000, 'n');
    EXPECT_EQ(host.processName(), std::string(256, 'n'));
}

TEST_F(HostNameScutilTest, withoutAProcessNameItIsEmpty)
{
    EXPECT_EQ(host.processName(), "");
    knownHost() = {.name = "rubbish", .status = -1};
    EXPECT_EQ(host.processName(), "") << "whatever the system has written before it failed";
}

} // namespace
} // namespace orvalen
