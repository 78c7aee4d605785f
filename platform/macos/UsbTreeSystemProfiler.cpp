#include "platform/macos/UsbTreeSystemProfiler.h"

#include <system_error>

#include "platform/macos/UsbReport.h"

namespace orvalen {

namespace {

constexpr const char *systemProfiler = "/usr/sbin/system_profiler";

} // namespace

const std::vector<UsbReportCommand> &UsbTreeSystemProfiler::commands()
{
    static const std::vector<UsbReportCommand> list = {
        {systemProfiler, {"SPUSBDataType", "-json"}, "SPUSBDataType"},
        {systemProfiler, {"SPUSBHostDataType", "-json"}, "SPUSBHostDataType"},
    };
    return list;
}

std::vector<UsbNode> UsbTreeSystemProfiler::read()
{
    for (const auto &command : commands()) {
        try {
            const auto report = processes.outputOf(command.program, command.arguments, limits);
            if (auto nodes = usbNodesInReport(report, command.key); !nodes.empty())
                return nodes;
        } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then it reports nothing
        }
    }
    return {};
}

} // namespace orvalen
