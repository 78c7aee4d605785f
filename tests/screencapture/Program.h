#pragma once

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

namespace orvalen::test {

using Environment = std::map<std::string, std::string>;

struct Outcome
{
    int status = -1;  ///< 128 and more: the signal that ended it.
    std::string said; ///< On standard error.
};

/// The capture command, or another one that runs it, as somebody starts it. Knows no display but what its environment
/// names.
class Program
{
public:
    Program(std::vector<std::string> command, const Environment &environment);
    ~Program(); ///< Kills it if it still runs.

    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    void kill() const;

    /// Waits for its end.
    [[nodiscard]] Outcome outcome();

private:
    pid_t process = -1;
    int messages = -1;
};

/// The path of the capture command.
[[nodiscard]] std::string captureCommand();

/// Runs the capture command to its end.
[[nodiscard]] Outcome capture(const std::vector<std::string> &arguments, const Environment &environment);

} // namespace orvalen::test
