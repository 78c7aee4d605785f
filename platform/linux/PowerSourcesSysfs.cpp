#include "platform/linux/PowerSourcesSysfs.h"

#include <utility>

#include "platform/linux/SysfsFiles.h"

namespace orvalen {

namespace {

/// A mouse or a headset is a battery too, but not one that the machine runs on.
bool isOfThisMachine(const std::string &supply)
{
    return sysfs::text(supply + "/scope").value_or("System") == "System";
}

} // namespace

PowerSourcesSysfs::PowerSourcesSysfs(std::string root) : root(std::move(root)) {}

std::vector<PowerSource> PowerSourcesSysfs::list()
{
    const auto folder = root + "/class/power_supply/";
    bool isPluggedIn = false;
    std::vector<PowerSource> batteries;
    for (const auto &name : sysfs::entries(folder).value_or(std::vector<std::string>{})) {
        const auto supply = folder + name;
        const auto type = sysfs::text(supply + "/type");
        if (type == "Battery" && isOfThisMachine(supply))
            batteries.push_back({.state = std::nullopt, .currentCapacity = sysfs::number(supply + "/capacity").value});
        if (type == "Mains" || type == "USB")
            isPluggedIn = isPluggedIn || sysfs::number(supply + "/online").value.value_or(0) != 0;
    }
    for (auto &battery : batteries)
        battery.state = isPluggedIn ? "AC Power" : "Battery Power";
    return batteries;
}

} // namespace orvalen
