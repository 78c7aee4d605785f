#include "streaming/server/CaptureCommand.h"

#include <csignal>
#include <cstdint>
#include <filesystem>
#include <future>
#include <sstream>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include "streaming/server/Descriptor.h"
#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

using namespace std::chrono_literals;

class CaptureCommandTest : public testing::Test
{
protected:
    void commandIs(std::string_view script)
    {
        folder.write("screencapture", "#!/bin/sh\n" + std::string(script), true);
    }

    /// Runs the command with one argument, a file in our folder.
    bool run(std::string_view file = "out")
    {
        const auto path = (folder / file).string();
        const char *const arguments[] = {"screencapture", path.c_str(), nullptr};
        return command.run(arguments);
    }

    const test::TemporaryFolder folder;
    const test::FirstOnSearchPath onSearchPath{folder.path()};
    std::mutex descriptors;
    CaptureCommand command{"", descriptors};
};

TEST_F(CaptureCommandTest, succeedsAsTheCommandDoes)
{
    commandIs("echo \"$@\" >\"$1\"");
    EXPECT_TRUE(run());
    EXPECT_EQ(test::contentsOf(folder / "out"), (folder / "out").string() + "\n");
    commandIs("exit 3");
    EXPECT_FALSE(run());
    commandIs("kill -9 $$");
    EXPECT_FALSE(run());
}

TEST_F(CaptureCommandTest, failsIfThereIsNone)
{
    setenv("PATH", folder.path().c_str(), 1); // put back by the fixture
    EXPECT_FALSE(run());
}

TEST_F(CaptureCommandTest, failsIfItCannotBeStarted)
{
    folder.write("screencapture", "#!/no/such/interpreter\n", true);
    EXPECT_FALSE(run());
}

TEST_F(CaptureCommandTest, getsDefaultSignals)
{
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    commandIs("grep -E 'Sig(Blk|Ign)' /proc/self/status | cut -c9- >\"$1\"");
    EXPECT_TRUE(run());
    pthread_sigmask(SIG_UNBLOCK, &blocked, nullptr);
    std::signal(SIGPIPE, SIG_DFL);
    std::uint64_t stillBlocked = 1;
    std::uint64_t ignored = 1;
    std::istringstream(test::contentsOf(folder / "out")) >> std::hex >> stillBlocked >> ignored;
    EXPECT_EQ(stillBlocked, 0U);
    EXPECT_EQ(ignored & 0x7fff'ffff, 0U); // the two after the ordinary ones are the C library's own
}

TEST_F(CaptureCommandTest, waitsForWhoeverMakesADescriptor)
{
    commandIs("echo done >\"$1\"");
    std::unique_lock lock(descriptors);
    std::promise<void> isRunning;
    std::thread runner([&] {
        isRunning.set_value();
        EXPECT_TRUE(run());
    });
    isRunning.get_future().wait();
    // Time in which a command that waits for nobody would leave its mark many times over.
    for (int i = 0; i < 30 && !std::filesystem::exists(folder / "out"); ++i)
        std::this_thread::sleep_for(10ms);
    EXPECT_FALSE(std::filesystem::exists(folder / "out"));
    lock.unlock();
    runner.join();
    EXPECT_EQ(test::contentsOf(folder / "out"), "done\n");
}

TEST_F(CaptureCommandTest, whatHangsIsKilledWithAllItStarted)
{
    // Whoever still has the pipe open lives.
    ASSERT_EQ(mkfifo((folder / "alive").c_str(), 0600), 0);
    const Descriptor pipe(open((folder / "alive").c_str(), O_RDONLY | O_NONBLOCK));
    commandIs("exec 3>\"$1\"\nsleep 1000 &\nsleep 1000");
    CaptureCommand impatient("", descriptors, 300ms);
    const auto path = (folder / "alive").string();
    const char *const arguments[] = {"screencapture", path.c_str(), nullptr};
    EXPECT_FALSE(impatient.run(arguments));
    pollfd waiting{pipe.get(), POLLIN, 0};
    ASSERT_EQ(poll(&waiting, 1, 10'000), 1);
    EXPECT_TRUE(waiting.revents & POLLHUP);
}

TEST_F(CaptureCommandTest, oneThatHangsDoesNotHarmTheOthers)
{
    commandIs("case $1 in */slow) sleep 1000;; *) echo done >\"$1\";; esac");
    CaptureCommand impatient("", descriptors, 2s);
    const auto slow = (folder / "slow").string();
    const char *const slowly[] = {"screencapture", slow.c_str(), nullptr};
    std::thread hanging([&] { EXPECT_FALSE(impatient.run(slowly)); });
    for (int i = 0; i < 20; ++i) {
        const auto quick = (folder / ("quick" + std::to_string(i))).string();
        const char *const quickly[] = {"screencapture", quick.c_str(), nullptr};
        EXPECT_TRUE(impatient.run(quickly));
    }
    hanging.join();
}

TEST_F(CaptureCommandTest, manyRunAtOnce)
{
    commandIs("echo done >\"$1\"");
    std::vector<std::thread> runners;
    for (int i = 0; i < 16; ++i)
        runners.emplace_back([this, i] { EXPECT_TRUE(run("out" + std::to_string(i))); });
    for (auto &runner : runners)
        runner.join();
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(test::contentsOf(folder / ("out" + std::to_string(i))), "done\n");
}

} // namespace
} // namespace orvalen
