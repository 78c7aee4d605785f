#include "platform/linux/UrlOpenerXdg.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/posix/ChildProcessesPosix.h"
#include "tests/support/StreamFakes.h"
#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A search path with nothing on it but what a test puts there.
class UrlOpenerXdgTest : public ::testing::Test
{
protected:
    void install(const std::string &script = "#!/bin/sh\n") const { temporary.write("xdg-open", script, true); }

    /// What was started for that address.
    std::vector<std::string> startedFor(std::string_view url)
    {
        UrlOpenerXdg(processes, folder.string()).open(url);
        return diary.take();
    }

    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
    test::Diary diary;
    test::FakeChildProcesses processes{diary};
};

TEST_F(UrlOpenerXdgTest, handsTheAddressOverAsItIs)
{
    install();
    for (const std::string url : {"http://192.168.1.20:8999", "http://[fe80::1]:8999/a%20b?x=1&y=%C2%B0#top",
                                  "file:///home/j%C3%BCrgen/My%20Desktop/100%25%20%231%3F.html",
                                  "x-apple.systempreferences:com.apple.preference.displays"})
        EXPECT_THAT(startedFor(url), ElementsAre("launch " + folder.string() + "/xdg-open " + url));
}

TEST_F(UrlOpenerXdgTest, whatIsNoAddressOpensNothing)
{
    install();
    for (const auto *const text : {"", "--manual", "-a:b", "/etc/passwd", "\xff\xfe"})
        EXPECT_THAT(startedFor(text), IsEmpty()) << text;
}

TEST_F(UrlOpenerXdgTest, withoutTheProgramNothingHappens)
{
    EXPECT_THAT(startedFor("http://localhost"), IsEmpty());
    install();
    processes.missing.insert((folder / "xdg-open").string());
    EXPECT_THAT(startedFor("http://localhost"), ElementsAre(::testing::EndsWith("/xdg-open http://localhost")));
}

TEST_F(UrlOpenerXdgTest, whatOpensIsLeftToTheUser)
{
    install();
    startedFor("http://localhost");
    ASSERT_EQ(processes.launched.size(), 1U);
    EXPECT_TRUE(processes.launched.front()->isRunning);
    EXPECT_FALSE(processes.launched.front()->isHeld);
}

TEST_F(UrlOpenerXdgTest, whatARealProgramWritesDoesNotComeOutHere)
{
    install(R"(#!/bin/sh
echo chatter
echo chatter >&2
printf '[%s]' "$@" >"${0%/*}/new"
mv "${0%/*}/new" "${0%/*}/shown"
)");
    ChildProcessesPosix real;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    UrlOpenerXdg(real, folder.string()).open("http://localhost/a%20b");
    while (!fs::exists(folder / "shown")) // the test's own time limit ends a wait in vain
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    std::ifstream shown(folder / "shown");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(shown), {}), "[http://localhost/a%20b]");
}

} // namespace
} // namespace orvalen
