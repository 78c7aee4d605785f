#include "streaming/OfflineBridgeManager.h"

#include <algorithm>
#include <string_view>

#include "platform/NetworkInterfaces.h"
#include "platform/Platform.h"
#include "streaming/StreamAddresses.h"

namespace orvalen {

namespace {

bool startsWithAny(std::string_view address, std::initializer_list<std::string_view> beginnings)
{
    return std::any_of(beginnings.begin(), beginnings.end(),
                       [&](std::string_view beginning) { return address.starts_with(beginning); });
}

/// The kind of link, for people; empty if it is none to a phone. An address counts for more than a name.
std::string_view linkLabel(std::string_view name, std::string_view address)
{
    if (address.starts_with("172."))
        return "Apple iPhone USB Link";
    if (startsWithAny(address, {"192.168.42.", "192.168.43.", "192.168.44."}))
        return "Android USB Tether Link";
    if (name.starts_with("en") || name.find("bridge") != std::string_view::npos)
        return "USB Network Bridge";
    return "";
}

} // namespace

OfflineBridgeManager &OfflineBridgeManager::shared()
{
    static auto &manager = *new OfflineBridgeManager(*Platform::installed().interfaces);
    return manager;
}

USBBridgeInfo OfflineBridgeManager::detectUSBBridge(int port)
{
    return usbBridgeAmong(interfaces.list(), port);
}

std::string OfflineBridgeManager::getOfflineUSBAddress()
{
    return detectUSBBridge(standardPort).ipAddress;
}

USBBridgeInfo usbBridgeAmong(const std::optional<std::vector<NetworkInterface>> &interfaces, int port)
{
    if (!interfaces || interfaces->empty())
        return {.isDetected = false,
                .ipAddress = "",
                .interfaceName = "",
                .deviceLabel = "Not Connected",
                .connectionURL = ""};
    for (const auto &entry : *interfaces) {
        if (!entry.isUp && !entry.isRunning)
            continue;
        if (entry.family != NetworkInterface::Family::ipv4 || !entry.address)
            continue;
        if (entry.name == "en0" || startsWithAny(*entry.address, {"127.", "169.254."})) // en0 is the built-in Wi-Fi
            continue;
        if (const auto label = linkLabel(entry.name, *entry.address); !label.empty())
            return {.isDetected = true,
                    .ipAddress = *entry.address,
                    .interfaceName = entry.name,
                    .deviceLabel = std::string(label),
                    .connectionURL = streamURL(*entry.address, port)};
    }
    return {.isDetected = false,
            .ipAddress = "",
            .interfaceName = "",
            .deviceLabel = "No USB Tethering Active",
            .connectionURL = ""};
}

} // namespace orvalen
