#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvalen {

/// One address of a network interface, as the system lists it. An interface with several addresses has several entries.
struct NetworkInterface
{
    enum class Family
    {
        none, ///< The entry has no address.
        ipv4,
        other,
    };

    std::string name; ///< For example "en0".
    bool isUp = false;
    bool isRunning = false;
    bool isLoopback = false;
    Family family = Family::none;
    std::optional<std::string> address; ///< Dotted decimal; only for `ipv4`, and none if it cannot be put into words.
};

/// The machine's network interfaces. Any thread.
class NetworkInterfaces
{
public:
    virtual ~NetworkInterfaces() = default;

    /// In the order that the system gives; std::nullopt if it gives no list.
    [[nodiscard]] virtual std::optional<std::vector<NetworkInterface>> list() = 0;
};

} // namespace orvalen
