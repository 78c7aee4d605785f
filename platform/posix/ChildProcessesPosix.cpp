#include "platform/posix/ChildProcessesPosix.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdint>
#include <future>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ; // NOLINT: its name is the system's

namespace orvalen {

namespace {

void require(int error, const std::string &what)
{
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

/// What a child starts with: an empty input, outputs that lead nowhere, no other descriptor. A standard output that is
/// given leads there.
class Descriptors
{
public:
    explicit Descriptors(std::optional<int> output)
    {
        require(::posix_spawn_file_actions_init(&actions), "posix_spawn_file_actions_init");
        if (output) // first: it may have the number of one of the others
            ::posix_spawn_file_actions_adddup2(&actions, *output, STDOUT_FILENO);
        else
            ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
#ifndef __APPLE__ // POSIX_SPAWN_CLOEXEC_DEFAULT does it there
        ::posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
#endif
    }
    ~Descriptors()
    {
        ::posix_spawn_file_actions_destroy(&actions);
    }
    Descriptors(const Descriptors &) = delete;
    Descriptors &operator=(const Descriptors &) = delete;

    posix_spawn_file_actions_t actions{};
};

/// A session of its own, no signal blocked and none ignored.
class Attributes
{
public:
    Attributes()
    {
        require(::posix_spawnattr_init(&attributes), "posix_spawnattr_init");
        sigset_t none, all;
        sigemptyset(&none);
        sigfillset(&all);
        sigdelset(&all, SIGKILL);
        sigdelset(&all, SIGSTOP);
        ::posix_spawnattr_setsigmask(&attributes, &none);
        ::posix_spawnattr_setsigdefault(&attributes, &all);
        int flags = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID;
#ifdef __APPLE__
        flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
#endif
        ::posix_spawnattr_setflags(&attributes, static_cast<short>(flags));
    }
    ~Attributes()
    {
        ::posix_spawnattr_destroy(&attributes);
    }
    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;

    posix_spawnattr_t attributes{};
};

/// One child; shared by whoever has it in hand and the thread that waits for it.
class Child
{
public:
    /// Once, before anything else. 0 or an errno value.
    [[nodiscard]] int spawn(const char *program, char *const *argv, const Descriptors &descriptors,
                            const Attributes &attributes)
    {
        return ::posix_spawn(&pid, program, &descriptors.actions, &attributes.attributes, argv, environ);
    }

    /// Waits for its end and takes leave of it: from then on the number may be another process's.
    void seeOff()
    {
        siginfo_t info = {};
        while (::waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT) != 0 && errno == EINTR) {
        }
        const std::scoped_lock lock(mutex);
        int status = 0;
        while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
        }
        exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        ended.notify_all();
    }

    [[nodiscard]] bool isRunning()
    {
        const std::scoped_lock lock(mutex);
        return !exitStatus;
    }

    void signal(int number)
    {
        const std::scoped_lock lock(mutex);
        if (!exitStatus)
            ::kill(pid, number);
    }

    std::optional<int> exitStatusWithin(std::chrono::milliseconds time)
    {
        std::unique_lock lock(mutex);
        ended.wait_for(lock, time, [this] { return exitStatus.has_value(); });
        return exitStatus;
    }

private:
    pid_t pid = -1;
    std::mutex mutex; ///< Guards what follows, and the meaning of `pid`.
    std::condition_variable ended;
    std::optional<int> exitStatus; ///< Once it has ended.
};

class ChildProcessPosix : public ChildProcess
{
public:
    ChildProcessPosix(std::shared_ptr<Child> child, std::chrono::milliseconds patience)
        : child(std::move(child)), patience(patience)
    {
    }

    bool isRunning() override { return child->isRunning(); }
    void terminate() override { child->signal(SIGTERM); }
    void waitUntilExit() override
    {
        if (child->exitStatusWithin(patience))
            return;
        child->signal(SIGKILL);
        child->exitStatusWithin(patience);
    }
    std::optional<int> exitStatusWithin(std::chrono::milliseconds time) override
    {
        return child->exitStatusWithin(time);
    }

private:
    const std::shared_ptr<Child> child;
    const std::chrono::milliseconds patience;
};

/// Starts a child and the thread that sees it off. Throws std::system_error.
std::shared_ptr<Child> start(const std::string &program, const std::vector<std::string> &arguments,
                             std::optional<int> output)
{
    std::vector<char *> argv{const_cast<char *>(program.c_str())};
    for (const auto &argument : arguments)
        argv.push_back(const_cast<char *>(argument.c_str()));
    argv.push_back(nullptr);
    const Descriptors descriptors(output);
    const Attributes attributes;

    // The thread is there before the child: where there is none to be had, there is nothing to take back.
    auto child = std::make_shared<Child>();
    std::promise<int> started;
    auto error = started.get_future();
    std::thread([started = std::move(started), child, &program, &argv, &descriptors, &attributes]() mutable {
        const int failure = child->spawn(program.c_str(), argv.data(), descriptors, attributes);
        started.set_value(failure); // the references end here
        if (failure == 0)
            child->seeOff();
    }).detach();
    require(error.get(), program);
    return child;
}

/// The way from a child's output to us.
class Pipe
{
public:
    Pipe()
    {
#ifdef __APPLE__
        require(::pipe(ends.data()) == 0 ? 0 : errno, "pipe");
        for (const int end : ends)
            ::fcntl(end, F_SETFD, FD_CLOEXEC);
#else
        require(::pipe2(ends.data(), O_CLOEXEC) == 0 ? 0 : errno, "pipe");
#endif
    }
    ~Pipe()
    {
        closeEnd(0);
        closeEnd(1);
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    [[nodiscard]] int writingEnd() const
    {
        return ends[1];
    }

    /// The child has its own by now; as long as ours is open, there is no end to read.
    void closeWritingEnd()
    {
        closeEnd(1);
    }

    struct Reading
    {
        std::string text;
        bool isComplete = false; ///< To the end of the pipe, not to a limit.
    };

    /// `bytes` at most, until `deadline`.
    [[nodiscard]] Reading readToEnd(std::size_t bytes, std::chrono::steady_clock::time_point deadline) const
    {
        Reading reading;
        std::array<char, 16384> buffer; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by the read
        while (isReadable(deadline)) {
            const auto count = ::read(ends[0], buffer.data(), buffer.size());
            if (count < 0 && errno == EINTR)
                continue;
            reading.isComplete = count == 0;
            if (count <= 0)
                break;
            const auto room = bytes - reading.text.size();
            reading.text.append(buffer.data(), std::min(room, static_cast<std::size_t>(count)));
            if (static_cast<std::size_t>(count) > room)
                break;
        }
        return reading;
    }

private:
    [[nodiscard]] bool isReadable(std::chrono::steady_clock::time_point deadline) const
    {
        for (;;) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
            if (left.count() <= 0)
                return false;
            pollfd wanted{.fd = ends[0], .events = POLLIN, .revents = 0};
            const int slice = static_cast<int>(std::min<std::int64_t>(left.count(), 60'000));
            if (::poll(&wanted, 1, slice) > 0)
                return true;
        }
    }

    void closeEnd(std::size_t end)
    {
        if (ends[end] >= 0)
            ::close(ends[end]);
        ends[end] = -1;
    }

    std::array<int, 2> ends{-1, -1};
};

} // namespace

std::unique_ptr<ChildProcess> ChildProcessesPosix::launch(const std::string &program,
                                                          const std::vector<std::string> &arguments)
{
    return std::make_unique<ChildProcessPosix>(start(program, arguments, std::nullopt), patience);
}

std::string ChildProcessesPosix::outputOf(const std::string &program, const std::vector<std::string> &arguments,
                                          const OutputLimits &limits)
{
    const auto deadline = std::chrono::steady_clock::now() + limits.time;
    Pipe pipe;
    const auto child = start(program, arguments, pipe.writingEnd());
    pipe.closeWritingEnd();
    auto reading = pipe.readToEnd(limits.bytes, deadline); // while it runs: a full pipe would keep it waiting
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now());
    if (!reading.isComplete || !child->exitStatusWithin(std::max(left, std::chrono::milliseconds::zero())))
        child->signal(SIGKILL);
    return std::move(reading.text);
}

} // namespace orvalen
