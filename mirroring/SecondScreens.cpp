#include "mirroring/SecondScreens.h"

#include <algorithm>
#include <string>

#include "core/Text.h"
#include "mirroring/RandomUuid.h"

namespace orvalen {

namespace {

constexpr std::string_view nameOfTheNameless = "USB Peripheral";

void append(const UsbNode &node, std::vector<USBDeviceInfo> &list)
{
    const std::string_view name = node.name ? std::string_view(*node.name) : nameOfTheNameless;
    if (const auto *const kind = secondScreenKind(name))
        list.push_back({.id = randomUuid(),
                        .name = std::string(name),
                        .type = std::string(kind->type),
                        .isConnected = true,
                        .instructions = std::string(kind->instructions)});
}

} // namespace

const std::vector<SecondScreenKind> &secondScreenKinds()
{
    static const std::vector<SecondScreenKind> kinds = {
        {{"ipad"},
         "Apple iPad (Sidecar USB Bridge)",
         "Cable connected! Mac can mirror/extend display immediately via Sidecar without Wi-Fi."},
        {{"iphone"}, "Apple iPhone (AirPlay USB)", "iPhone USB link ready. Can receive audio/screen mirroring stream."},
        {{"android", "pixel", "samsung", "redmi", "oneplus"},
         "Android Tablet/Phone (ADB Display)",
         "Connected via USB. Use Scrcpy / Duet / Spacedesk to mirror Mac screen."},
    };
    return kinds;
}

const SecondScreenKind *secondScreenKind(std::string_view name)
{
    const auto lower = text::lowerCased(name);
    const auto isIn = [&](std::string_view word) { return lower.find(word) != std::string::npos; };
    const auto &kinds = secondScreenKinds();
    const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](const SecondScreenKind &each) {
        return std::any_of(each.words.begin(), each.words.end(), isIn);
    });
    return kind == kinds.end() ? nullptr : &*kind;
}

void parseTree(const std::vector<UsbNode> &items, std::vector<USBDeviceInfo> &list)
{
    // By hand, not by recursion: how deep a report goes is for its writer to say, and stacks are short.
    struct Level
    {
        const std::vector<UsbNode> *items;
        std::size_t next;
    };
    for (std::vector<Level> levels{{&items, 0}}; !levels.empty();) {
        auto &level = levels.back();
        if (level.next == level.items->size()) {
            levels.pop_back();
            continue;
        }
        const auto &node = (*level.items)[level.next++];
        append(node, list);
        levels.push_back({&node.items, 0});
    }
}

USBDeviceInfo placeholderDevice()
{
    return {.id = "virt-ipad",
            .name = "iPad via USB-C (Apple Sidecar)",
            .type = "Zero-Latency Hardware Mirror",
            .isConnected = false,
            .instructions = "Connect iPad via USB-C cable. Click below to launch Sidecar mirror."};
}

} // namespace orvalen
