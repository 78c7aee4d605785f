#pragma once

#include <chrono>
#include <cstddef>

#include "platform/ChildProcesses.h"
#include "platform/HostName.h"

namespace orvalen {

/// The local host name of the system's configuration, which is the one that its responder announces; `scutil` tells it.
/// Whatever it writes counts, also beside a failure.
class HostNameScutil : public HostName
{
public:
    static constexpr std::size_t longestOutput = 4096; ///< Bytes; a label of a host name has 63 at most.
    static constexpr std::chrono::milliseconds patience{500};

    /// `processes` must outlive it.
    explicit HostNameScutil(ChildProcesses &processes) : processes(processes) {}

    [[nodiscard]] std::optional<std::string> multicastName() override;
    [[nodiscard]] std::string processName() override;

private:
    ChildProcesses &processes;
};

} // namespace orvalen
