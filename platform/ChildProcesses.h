#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orvalen {

/// A program that was started and is ours to end. Letting it go leaves it running.
class ChildProcess
{
public:
    virtual ~ChildProcess() = default;

    [[nodiscard]] virtual bool isRunning() = 0;

    /// Asks it to end. Does not wait.
    virtual void terminate() = 0;

    /// Blocks until it has ended. One that ignores being asked to end is ended by force after a while.
    virtual void waitUntilExit() = 0;

    /// Waits for its end, `time` at most: its exit status (128 and the signal's number, if a signal ended it), or
    /// std::nullopt while it runs.
    [[nodiscard]] virtual std::optional<int> exitStatusWithin(std::chrono::milliseconds time) = 0;
};

/// How much of a program's output is wanted, and for how long.
struct OutputLimits
{
    std::size_t bytes = 0;
    std::chrono::milliseconds time{};
};

/// Starts programs by absolute path and argument list, never through a shell. They inherit the environment and no
/// descriptor: they read nothing, what they write is lost (some outlive us, and nobody could tell whose lines those
/// are). No signal is blocked for them. Any thread.
class ChildProcesses
{
public:
    virtual ~ChildProcesses() = default;

    /// Starts `program` with `arguments` (without the program's own name). Returns as soon as it runs; never null.
    /// Throws std::system_error if it cannot be started.
    [[nodiscard]] virtual std::unique_ptr<ChildProcess> launch(const std::string &program,
                                                               const std::vector<std::string> &arguments) = 0;

    /// Runs `program` to its end and returns all that it wrote to its standard output. Blocks until both have ended,
    /// the program and its output (which its own children may keep open): background threads. One that goes beyond a
    /// limit is ended by force; what it wrote up to there is returned. Throws std::system_error if it cannot be
    /// started.
    [[nodiscard]] virtual std::string outputOf(const std::string &program, const std::vector<std::string> &arguments,
                                               const OutputLimits &limits) = 0;
};

} // namespace orvalen
