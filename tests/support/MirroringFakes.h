#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/SettingsPages.h"
#include "platform/UsbTree.h"

namespace orvalen::test {

/// A node with those below it.
template <typename... Nodes>
UsbNode usbNode(std::optional<std::string> name, Nodes... below)
{
    std::vector<UsbNode> items;
    (items.push_back(std::move(below)), ...);
    return UsbNode(std::move(name), std::move(items));
}

template <typename... Nodes>
std::vector<UsbNode> usbNodes(Nodes... nodes)
{
    std::vector<UsbNode> list;
    (list.push_back(std::move(nodes)), ...);
    return list;
}

/// A chain of hubs with one device at its end.
inline std::vector<UsbNode> usbChain(int hubs, const std::string &device)
{
    auto chain = usbNodes(UsbNode(device));
    for (int i = 0; i < hubs; ++i)
        chain = usbNodes(UsbNode("Hub", std::move(chain)));
    return chain;
}

/// Whatever a test wants to be connected, as slowly as it wants.
struct FakeUsbTree : UsbTree
{
    std::function<std::vector<UsbNode>()> onRead = [] { return std::vector<UsbNode>(); };
    std::vector<UsbNode> read() override
    {
        const auto now = onRead; // may be replaced while it runs
        return now();
    }
};

/// Settings pages that note which of them were wanted.
struct FakeSettingsPages : SettingsPages
{
    std::vector<std::string> opened;
    std::set<std::string, std::less<>> noUrls; ///< Texts that this system does not take for a URL.

    bool open(std::string_view url) override
    {
        opened.emplace_back(url);
        return !noUrls.contains(url);
    }
};

} // namespace orvalen::test
