#pragma once

#include <optional>
#include <string>

namespace orvalen {

/// The names under which this machine is known. Main thread; answers within half a second.
class HostName
{
public:
    virtual ~HostName() = default;

    /// The name that multicast DNS announces, without its domain, as the responder writes it: any bytes, white space
    /// around it included. std::nullopt if no responder answers.
    [[nodiscard]] virtual std::optional<std::string> multicastName() = 0;

    /// The host name that every process can ask for; empty if there is none.
    [[nodiscard]] virtual std::string processName() = 0;
};

} // namespace orvalen
