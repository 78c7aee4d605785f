#pragma once

#include <chrono>

#include "platform/ChildProcesses.h"

namespace orvalen {

/// Programs started by posix_spawn, each in a session of its own: the keys and the end of a terminal do not reach it.
///
/// A thread waits for each child, so that one that has ended leaves nothing behind, whether or not somebody still has
/// it in hand.
class ChildProcessesPosix : public ChildProcesses
{
public:
    /// `patience`: for how long `waitUntilExit` waits before it ends the child by force. Should even that not help (the
    /// child hangs in the system), it gives up after as long again.
    explicit ChildProcessesPosix(std::chrono::milliseconds patience = std::chrono::seconds(2)) : patience(patience) {}

    [[nodiscard]] std::unique_ptr<ChildProcess> launch(const std::string &program,
                                                       const std::vector<std::string> &arguments) override;

    [[nodiscard]] std::string outputOf(const std::string &program, const std::vector<std::string> &arguments,
                                       const OutputLimits &limits) override;

private:
    std::chrono::milliseconds patience;
};

} // namespace orvalen
