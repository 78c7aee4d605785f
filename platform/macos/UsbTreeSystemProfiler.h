#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/ChildProcesses.h"
#include "platform/UsbTree.h"

namespace orvalen {

/// A report that the system profiler can give.
struct UsbReportCommand
{
    std::string program;
    std::vector<std::string> arguments;
    std::string key; ///< Under which the tree stands in the report.
};

/// The USB tree as macOS's system profiler reports it, in a program of its own, which takes seconds.
class UsbTreeSystemProfiler : public UsbTree
{
public:
    static constexpr std::size_t largestReport = 64 * 1024 * 1024; ///< Bytes; no machine has devices for so many.
    static constexpr std::chrono::seconds patience{60};            ///< For each report.

    /// Asked in this order until one has a bus or device, with or without a name. Systems from version 26 on leave the
    /// first one empty.
    [[nodiscard]] static const std::vector<UsbReportCommand> &commands();

    /// `limits`: those of each report; one that goes beyond them is as good as none. `processes` must outlive it.
    explicit UsbTreeSystemProfiler(ChildProcesses &processes,
                                   const OutputLimits &limits = {.bytes = largestReport, .time = patience})
        : processes(processes), limits(limits)
    {
    }

    [[nodiscard]] std::vector<UsbNode> read() override;

private:
    ChildProcesses &processes;
    const OutputLimits limits;
};

} // namespace orvalen
