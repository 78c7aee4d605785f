#pragma once

#include <string>

namespace orvalen {

/// A device that can show this machine's screen, or what to attach where there is none.
struct USBDeviceInfo
{
    std::string id;   ///< Another one in each scan.
    std::string name; ///< As the device calls itself.
    std::string type;
    bool isConnected = false;
    std::string instructions; ///< One line for the user.

    friend bool operator==(const USBDeviceInfo &, const USBDeviceInfo &) = default;
};

} // namespace orvalen
