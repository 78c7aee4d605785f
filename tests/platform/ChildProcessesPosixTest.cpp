#include "platform/posix/ChildProcessesPosix.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/TemporaryFolder.h"

namespace orvalen {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

/// Patient: only a failing test waits so long.
bool eventually(const std::function<bool()> &condition)
{
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

class ChildProcessesPosixTest : public ::testing::Test
{
protected:
    [[nodiscard]] std::string path(const char *name) const { return (folder / name).string(); }

    [[nodiscard]] std::string contentsOf(const char *name) const { return test::contentsOf(folder / name); }

    /// A child that runs `script`, with the path of the folder as its $0.
    std::unique_ptr<ChildProcess> launchScript(const std::string &script, const std::vector<std::string> &more = {})
    {
        std::vector<std::string> arguments{"-c", script, folder.string()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return processes.launch("/bin/sh", arguments);
    }

    /// What the script writes to "$0/out".
    std::string outputOf(const std::string &script, const std::vector<std::string> &more = {})
    {
        launchScript(script, more)->waitUntilExit();
        return contentsOf("out");
    }

    static constexpr OutputLimits generous{.bytes = 10'000'000, .time = 60s};

    /// What the script, with the path of the folder as its $0, writes to its standard output.
    std::string written(const std::string &script)
    {
        return processes.outputOf("/bin/sh", {"-c", script, folder.string()}, generous);
    }
    /// The same of one that would go on for ever, once it has got as far as to `$leaveNumber NUMBER`, in "$0/pid".
    std::string writtenByEndless(const std::string &script)
    {
        const std::string preparation = R"(leave() { echo $1 >"$0/new"; mv "$0/new" "$0/pid"; }; leaveNumber=leave; )";
        std::string output;
        for (auto time = 200ms; !fs::exists(folder / "pid") && time < 60s; time *= 3)
            output = processes.outputOf("/bin/sh", {"-c", preparation + script, folder.string()},
                                        {.bytes = 1000, .time = time});
        EXPECT_TRUE(fs::exists(folder / "pid"));
        return output;
    }

    /// A child that has written its number to "$0/pid" and sleeps.
    pid_t launchSleeper(std::unique_ptr<ChildProcess> &child, const std::string &preparation = "")
    {
        child = launchScript(preparation + R"(echo $$ >"$0/new"; mv "$0/new" "$0/pid"; exec sleep 600)");
        EXPECT_TRUE(eventually([&] { return fs::exists(folder / "pid"); }));
        const auto pid = std::stoi(contentsOf("pid"));
        fs::remove(folder / "pid");
        return pid;
    }

    /// The letter in /proc; a blank if there is no such process.
    static char stateOf(pid_t pid)
    {
        std::ifstream stream("/proc/" + std::to_string(pid) + "/stat");
        const std::string line{std::istreambuf_iterator<char>(stream), {}};
        const auto end = line.rfind(") ");
        return end == std::string::npos ? ' ' : line[end + 2];
    }

    /// Neither running nor waiting for somebody to take leave of it.
    static bool isGone(pid_t pid) { return ::kill(pid, 0) != 0 && errno == ESRCH; }

    const test::TemporaryFolder temporary;
    const fs::path folder = temporary.path();
    ChildProcessesPosix processes{std::chrono::seconds(30)};
};

TEST_F(ChildProcessesPosixTest, aMissingProgramIsNamed)
{
    try {
        (void)processes.launch(path("not-there"), {});
        ADD_FAILURE() << "it was started";
    } catch (const std::system_error &error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_EQ(std::string(error.what()), path("not-there") + ": No such file or directory");
    }
}

TEST_F(ChildProcessesPosixTest, whatIsNoProgramIsNotRunByAShellInstead)
{
    std::ofstream(folder / "text") << "touch " << path("touched") << "\n";
    EXPECT_THROW((void)processes.launch(path("text"), {}), std::system_error) << "not executable";
    fs::permissions(folder / "text", fs::perms::owner_all);
    EXPECT_THROW((void)processes.launch(path("text"), {}), std::system_error) << "no interpreter named";
    EXPECT_THROW((void)processes.launch(folder.string(), {}), std::system_error) << "a folder";
    EXPECT_FALSE(fs::exists(folder / "touched"));
}

TEST_F(ChildProcessesPosixTest, theSearchPathIsNotLookedAt)
{
    EXPECT_THROW((void)processes.launch("sh", {"-c", ":"}), std::system_error);
}

TEST_F(ChildProcessesPosixTest, argumentsArriveAsTheyAre)
{
    EXPECT_EQ(outputOf(R"(printf '[%s]' "$@" >"$0/out")", {"a b", "", "$(id)", "'\"", "*", "line\nline", "ü", "-x"}),
              "[a b][][$(id)]['\"][*][line\nline][ü][-x]");
}

TEST_F(ChildProcessesPosixTest, theEnvironmentArrives)
{
    ::setenv("ORVALEN_TEST_GREETING", "good morning", 1);
    EXPECT_EQ(outputOf(R"(echo "$ORVALEN_TEST_GREETING" >"$0/out")"), "good morning\n");
    ::unsetenv("ORVALEN_TEST_GREETING");
}

TEST_F(ChildProcessesPosixTest, itReadsNothingAndWhatItWritesIsLost)
{
    // One that held our output open would keep its reader waiting when we have ended long since.
    EXPECT_EQ(outputOf(R"(links=$(readlink /proc/$$/fd/0 /proc/$$/fd/1 /proc/$$/fd/2); echo "$links" >"$0/out")"),
              "/dev/null\n/dev/null\n/dev/null\n");
}

TEST_F(ChildProcessesPosixTest, noOtherDescriptorReachesIt)
{
    const int low = ::open("/dev/null", O_RDONLY); // to be inherited, were it not for us
    const int high = ::fcntl(low, F_DUPFD, 900);
    ASSERT_GE(high, 900);
    const auto number = std::to_string(high);
    EXPECT_EQ(outputOf(R"(for n in 0 1 2 $1 $2; do [ -e /proc/$$/fd/$n ] && echo $n; done >"$0/out")",
                       {std::to_string(low), number}),
              "0\n1\n2\n");
    ::close(low);
    ::close(high);
}

TEST_F(ChildProcessesPosixTest, itsExitStatusIsTold)
{
    EXPECT_EQ(launchScript("exit 0")->exitStatusWithin(std::chrono::seconds(30)), 0);
    EXPECT_EQ(launchScript("exit 7")->exitStatusWithin(std::chrono::seconds(30)), 7);
    EXPECT_EQ(launchScript("kill -KILL $$")->exitStatusWithin(std::chrono::seconds(30)), 137);
}

TEST_F(ChildProcessesPosixTest, oneThatRunsHasNoExitStatusYet)
{
    std::unique_ptr<ChildProcess> child;
    launchSleeper(child);
    EXPECT_EQ(child->exitStatusWithin(std::chrono::milliseconds(1)), std::nullopt);
    child->terminate();
    EXPECT_EQ(child->exitStatusWithin(std::chrono::seconds(30)), 143);
}

TEST_F(ChildProcessesPosixTest, noSignalIsBlockedOrIgnoredThere)
{
    sigset_t all, before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto handler = std::signal(SIGPIPE, SIG_IGN);
    const auto status = outputOf(R"(while read -r name mask; do
                                        case $name in SigBlk: | SigIgn:) echo 0x$mask ;; esac
                                    done </proc/$$/status >"$0/out")");
    std::signal(SIGPIPE, handler);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    const auto second = status.find('\n') + 1;
    ASSERT_LT(second, status.size());
    constexpr auto ofTheLibrary = 0x180000000ULL; // 32 and 33, which no program can use
    EXPECT_EQ(std::stoull(status, nullptr, 16), 0U);
    EXPECT_EQ(std::stoull(status.substr(second), nullptr, 16) & ~ofTheLibrary, 0U);
}

TEST_F(ChildProcessesPosixTest, itHasASessionOfItsOwn)
{
    EXPECT_EQ(outputOf(R"(read -r pid name state parent group session rest </proc/$$/stat
                          [ $session = $$ ] && [ $group = $$ ] && echo own >"$0/out")"),
              "own\n");
}

TEST_F(ChildProcessesPosixTest, runsUntilItIsAskedToEnd)
{
    std::unique_ptr<ChildProcess> child;
    const auto pid = launchSleeper(child);
    EXPECT_TRUE(child->isRunning());
    child->terminate();
    child->waitUntilExit();
    EXPECT_FALSE(child->isRunning());
    EXPECT_TRUE(isGone(pid));
}

TEST_F(ChildProcessesPosixTest, oneThatEndsByItselfIsSeenToAndLeavesNothing)
{
    std::unique_ptr<ChildProcess> child;
    const auto pid = launchSleeper(child);
    ::kill(pid, SIGINT);
    EXPECT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_TRUE(isGone(pid));
}

TEST_F(ChildProcessesPosixTest, oneThatNobodyHoldsRunsOnAndLeavesNothing)
{
    std::unique_ptr<ChildProcess> child;
    const auto pid = launchSleeper(child);
    child.reset();
    EXPECT_EQ(::kill(pid, 0), 0);
    ::kill(pid, SIGTERM);
    EXPECT_TRUE(eventually([&] { return isGone(pid); }));
}

TEST_F(ChildProcessesPosixTest, oneThatOutlivesTheFactoryIsStillOurs)
{
    std::unique_ptr<ChildProcess> child;
    {
        ChildProcessesPosix passing;
        child = passing.launch("/bin/sleep", {"600"});
    }
    EXPECT_TRUE(child->isRunning());
    child->terminate();
    child->waitUntilExit();
    EXPECT_FALSE(child->isRunning());
}

TEST_F(ChildProcessesPosixTest, oneThatWillNotEndIsEndedByForce)
{
    processes = ChildProcessesPosix(50ms);
    std::unique_ptr<ChildProcess> child;
    const auto pid = launchSleeper(child, "trap '' TERM; ");
    child->terminate();
    child->waitUntilExit();
    EXPECT_TRUE(eventually([&] { return !child->isRunning(); }));
    EXPECT_TRUE(isGone(pid));
}

TEST_F(ChildProcessesPosixTest, oneThatIsStoppedIsEndedByForce)
{
    processes = ChildProcessesPosix(50ms);
    std::unique_ptr<ChildProcess> child;
    const auto pid = launchSleeper(child);
    ::kill(pid, SIGSTOP);
    EXPECT_TRUE(eventually([&] { return stateOf(pid) == 'T'; }));
    child->terminate();
    child->waitUntilExit();
    EXPECT_TRUE(eventually([&] { return !child->isRunning(); }));
}

TEST_F(ChildProcessesPosixTest, afterItsEndItIsLeftInPeace)
{
    const auto child = processes.launch("/bin/true", {});
    child->waitUntilExit();
    child->terminate(); // its number may be somebody else's by now
    child->waitUntilExit();
    EXPECT_FALSE(child->isRunning());
}

TEST_F(ChildProcessesPosixTest, otherChildrenOfTheProcessAreLeftToWhoeverStartedThem)
{
    char program[] = "/bin/sh", option[] = "-c", script[] = "exit 7";
    char *const arguments[] = {program, option, script, nullptr};
    char *const environment[] = {nullptr};
    pid_t pid = -1;
    ASSERT_EQ(::posix_spawn(&pid, program, nullptr, nullptr, arguments, environment), 0);
    for (int i = 0; i < 5; ++i)
        processes.launch("/bin/true", {})->waitUntilExit();
    int status = 0;
    ASSERT_EQ(::waitpid(pid, &status, 0), pid);
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

TEST_F(ChildProcessesPosixTest, aProcessThatWantsToHearOfNoChildStillSeesThemEnd)
{
    const auto handler = std::signal(SIGCHLD, SIG_IGN);
    const auto child = processes.launch("/bin/true", {});
    child->waitUntilExit();
    std::signal(SIGCHLD, handler);
    EXPECT_FALSE(child->isRunning());
}

TEST_F(ChildProcessesPosixTest, whatItWritesToItsStandardOutputIsReturnedWhole)
{
    EXPECT_EQ(written("printf 'a\\nb'; printf 'unheard' >&2"), "a\nb");
    EXPECT_EQ(written(":"), "");
    EXPECT_EQ(written("printf 'a\\0b\\377'"), std::string("a\0b\xFF", 4));
    EXPECT_EQ(written("printf before; exit 7"), "before");
    EXPECT_EQ(written("printf before; kill -KILL $$"), "before");
}

TEST_F(ChildProcessesPosixTest, argumentsAndEnvironmentAreThoseOfAnyChild)
{
    ::setenv("ORVALEN_TEST_GREETING", "good morning", 1);
    EXPECT_EQ(processes.outputOf("/bin/sh", {"-c", R"(printf '[%s]' "$ORVALEN_TEST_GREETING" "$@")", "sh", "a b", ""},
                                 generous),
              "[good morning][a b][]");
    ::unsetenv("ORVALEN_TEST_GREETING");
    EXPECT_EQ(written("readlink /proc/$$/fd/0 /proc/$$/fd/2; for n in 3 4 5 6 7 8 9; do "
                      "[ -e /proc/$$/fd/$n ] && echo $n; done"),
              "/dev/null\n/dev/null\n");
}

TEST_F(ChildProcessesPosixTest, itIsReadWhileItRuns)
{
    // Many times what a pipe takes.
    const auto output = written("head -c 5000000 /dev/zero | tr '\\0' x");
    EXPECT_EQ(output.size(), 5'000'000U);
    EXPECT_EQ(output.find_first_not_of('x'), std::string::npos);
}

TEST_F(ChildProcessesPosixTest, itsEndIsWaitedForToo)
{
    // Its output ends long before it does.
    EXPECT_EQ(
        written(R"(printf said; exec >/dev/null; i=0; while [ $i -lt 2000 ]; do i=$((i + 1)); done; touch "$0/done")"),
        "said");
    EXPECT_TRUE(fs::exists(folder / "done"));
}

TEST_F(ChildProcessesPosixTest, andWhatItsOwnChildrenWrite)
{
    EXPECT_EQ(written("(while ! [ -e \"$0/go\" ]; do :; done; printf late) & printf 'early '; touch \"$0/go\""),
              "early late");
}

TEST_F(ChildProcessesPosixTest, oneThatNeverEndsIsEndedByForce)
{
    EXPECT_EQ(writtenByEndless(R"(trap '' TERM; printf said; $leaveNumber $$; while :; do sleep 600; done)"), "said");
    EXPECT_TRUE(eventually([&] { return isGone(std::stoi(contentsOf("pid"))); }));
}

TEST_F(ChildProcessesPosixTest, oneThatClosesItsOutputAndNeverEndsIsEndedByForce)
{
    EXPECT_EQ(writtenByEndless("printf said; exec >/dev/null; $leaveNumber $$; exec sleep 600"), "said");
    EXPECT_TRUE(eventually([&] { return isGone(std::stoi(contentsOf("pid"))); }));
}

TEST_F(ChildProcessesPosixTest, anOutputThatSomebodyElseKeepsOpenIsNotWaitedForForEver)
{
    EXPECT_EQ(writtenByEndless("printf said; sleep 600 & $leaveNumber $!"), "said");
    EXPECT_EQ(::kill(std::stoi(contentsOf("pid")), SIGKILL), 0) << "it is not ours to end";
}

TEST_F(ChildProcessesPosixTest, oneThatWritesWithoutEndIsEndedByForce)
{
    const auto output =
        processes.outputOf("/bin/sh", {"-c", R"(echo $$ >"$0/pid"; exec cat /dev/zero)", folder.string()},
                           {.bytes = 100'000, .time = 60s});
    EXPECT_EQ(output, std::string(100'000, '\0'));
    const auto pid = std::stoi(contentsOf("pid"));
    EXPECT_TRUE(eventually([&] { return isGone(pid); }));
}

TEST_F(ChildProcessesPosixTest, asMuchAsIsAllowedIsNotTooMuch)
{
    EXPECT_EQ(processes.outputOf("/bin/sh", {"-c", "printf 12345; exit 0"}, {.bytes = 5, .time = 60s}), "12345");
    EXPECT_EQ(processes.outputOf("/bin/sh", {"-c", "printf 123456"}, {.bytes = 5, .time = 60s}), "12345");
    EXPECT_EQ(processes.outputOf("/bin/sh", {"-c", "printf 1"}, {.bytes = 0, .time = 60s}), "");
}

TEST_F(ChildProcessesPosixTest, aMissingProgramHasNoOutput)
{
    EXPECT_THROW((void)processes.outputOf(path("not-there"), {}, generous), std::system_error);
}

TEST_F(ChildProcessesPosixTest, noDescriptorIsLeftBehind)
{
    const auto count = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()); };
    const auto before = count();
    for (int i = 0; i < 20; ++i) {
        (void)written("echo");
        EXPECT_THROW((void)processes.outputOf(path("not-there"), {}, generous), std::system_error);
    }
    EXPECT_EQ(count(), before);
}

TEST_F(ChildProcessesPosixTest, ourOwnOutputsMayBeClosed)
{
    // In a process of its own: what opens next gets their numbers.
    const auto check = [] {
        ::close(STDIN_FILENO);
        ::close(STDOUT_FILENO);
        const auto output =
            ChildProcessesPosix().outputOf("/bin/sh", {"-c", "printf said"}, {.bytes = 10, .time = 60s});
        std::_Exit(output == "said" ? 0 : 1);
    };
    EXPECT_EXIT(check(), ::testing::ExitedWithCode(0), "");
}

TEST_F(ChildProcessesPosixTest, manyOutputsAtOnceFromManyThreads)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([this, i] {
            for (int j = 0; j < 10; ++j) {
                const auto text = std::to_string(100 * i + j);
                EXPECT_EQ(written("printf " + text), text);
            }
        });
    }
    for (auto &thread : threads)
        thread.join();
}

TEST_F(ChildProcessesPosixTest, manyAtOnceFromManyThreads)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([this] {
            for (int j = 0; j < 10; ++j) {
                const auto child = processes.launch("/bin/sleep", {j % 2 == 0 ? "600" : "0"});
                child->terminate();
                child->waitUntilExit();
                EXPECT_FALSE(child->isRunning());
                EXPECT_THROW((void)processes.launch(path("not-there"), {}), std::system_error);
            }
        });
    }
    for (auto &thread : threads)
        thread.join();
}

} // namespace
} // namespace orvalen
