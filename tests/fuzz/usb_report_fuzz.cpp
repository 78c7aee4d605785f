// What a program that reports the USB tree may write: any bytes. The tree must be the one that a reader finds who has
// the whole document before him, and each second screen in it must be listed.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

#include "mirroring/SecondScreens.h"
#include "platform/macos/UsbReport.h"

namespace {

using nlohmann::json;
using orvalen::UsbNode;

constexpr const char *key = "SPUSBDataType";

void require(bool condition)
{
    if (!condition)
        std::abort();
}

const json *arrayOfDictionaries(const json &dictionary, const char *name)
{
    const auto value = dictionary.find(name);
    if (value == dictionary.end() || !value->is_array())
        return nullptr;
    for (const auto &element : *value)
        if (!element.is_object())
            return nullptr;
    return &*value;
}

/// The slow way, by recursion. Counts the second screens.
std::size_t compare(const std::vector<UsbNode> &nodes, const json *array)
{
    require(nodes.size() == (array ? array->size() : 0));
    std::size_t screens = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const auto &dictionary = (*array)[i];
        const auto name = dictionary.find("_name");
        const bool isNamed = name != dictionary.end() && name->is_string();
        require(nodes[i].name.has_value() == isNamed);
        require(!isNamed || *nodes[i].name == name->get_ref<const std::string &>());
        screens += isNamed && orvalen::secondScreenKind(*nodes[i].name);
        screens += compare(nodes[i].items, arrayOfDictionaries(dictionary, "_items"));
    }
    return screens;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string report(reinterpret_cast<const char *>(data), size);
    const auto nodes = orvalen::usbNodesInReport(report, key);
    const auto document =
        report.find('\0') == std::string::npos ? json::parse(report, nullptr, false) : json(json::value_t::discarded);
    const auto screens = compare(nodes, document.is_object() ? arrayOfDictionaries(document, key) : nullptr);
    std::vector<orvalen::USBDeviceInfo> list;
    orvalen::parseTree(nodes, list);
    require(list.size() == screens);
    return 0;
}
