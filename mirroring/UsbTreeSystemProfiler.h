#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/UsbTree.h"

namespace orvalen {

class ChildProcesses;

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
    static constexpr std::size_t largestReport = 8 * 1024 * 1024; ///< Bytes: a kilobyte for thousands of devices.
    static constexpr std::chrono::seconds patience{60};           ///< For each report.

    /// Asked in this order until one names something. Systems from version 26 on leave the first one empty.
    [[nodiscard]] static const std::vector<UsbReportCommand> &commands();

    /// `processes` must outlive it.
    explicit UsbTreeSystemProfiler(ChildProcesses &processes) : processes(processes) {}

    [[nodiscard]] std::vector<UsbNode> read() override;

private:
    ChildProcesses &processes;
};

} // namespace orvalen
