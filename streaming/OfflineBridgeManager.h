#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orvalen {

class NetworkInterfaces;
struct NetworkInterface;

/// A network link over a USB cable to a phone that shares its connection.
struct USBBridgeInfo
{
    bool isDetected = false;
    std::string ipAddress;     ///< Ours on that link, dotted decimal; empty when there is none.
    std::string interfaceName; ///< For example "en5"; empty when there is none.
    std::string deviceLabel;   ///< The kind of link, or why there is none, for people.
    std::string connectionURL; ///< What the phone opens; empty when there is none.

    bool operator==(const USBBridgeInfo &) const = default;
};

/// Finds the link to a phone among the network interfaces. Stateless; any thread.
class OfflineBridgeManager
{
public:
    static constexpr int standardPort = 8999;

    /// `interfaces` must outlive it.
    explicit OfflineBridgeManager(NetworkInterfaces &interfaces) : interfaces(interfaces) {}
    virtual ~OfflineBridgeManager() = default;

    /// That of the installed platform, made on first use and never destroyed.
    [[nodiscard]] static OfflineBridgeManager &shared();

    /// Looks now. `port` goes into `connectionURL` alone.
    [[nodiscard]] virtual USBBridgeInfo detectUSBBridge(int port = standardPort);

    /// The address of the link; empty when there is none.
    [[nodiscard]] virtual std::string getOfflineUSBAddress();

private:
    NetworkInterfaces &interfaces;
};

/// The link in a list of interfaces as the system gives it: the first entry that qualifies. std::nullopt: no list.
[[nodiscard]] USBBridgeInfo usbBridgeAmong(const std::optional<std::vector<NetworkInterface>> &interfaces, int port);

} // namespace orvalen
