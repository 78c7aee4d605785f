#include "streaming/StreamAddresses.h"

#include <algorithm>

#include "core/Text.h"
#include "platform/NetworkInterfaces.h"

namespace orvalen {

namespace {

constexpr std::string_view scheme = "http://";

/// As a responder's answer or a process's name may be: empty if there is nothing to be had from it.
std::string cleanName(std::string_view given)
{
    const auto name = text::trimmed(given);
    return name ? text::lowerCased(*name) : "";
}

bool standsInHost(char character)
{
    const auto byte = static_cast<unsigned char>(character);
    return byte > ' ' && byte != 0x7F && std::string_view("\"#%/:<>?@[\\]^`{|}").find(character) == std::string::npos;
}

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

} // namespace

std::string wifiAddressAmong(const std::optional<std::vector<NetworkInterface>> &interfaces)
{
    std::string wifi(noAddress);
    if (!interfaces)
        return wifi;
    for (const auto &entry : *interfaces) {
        if (!entry.isUp || !entry.isRunning || entry.isLoopback)
            continue;
        if (entry.family != NetworkInterface::Family::ipv4 || !entry.address)
            continue;
        if (entry.address->starts_with("127.") || entry.address->starts_with("169.254."))
            continue;
        if (entry.name == "en0" || entry.name == "en1" || wifi == noAddress)
            wifi = *entry.address;
    }
    return wifi;
}

std::string bonjourHost(const std::optional<std::string> &multicastName, std::string_view processName)
{
    if (multicastName)
        if (const auto name = cleanName(*multicastName); !name.empty())
            return name + ".local";

    std::string name = text::isUtf8(processName) ? text::lowerCased(processName) : "";
    name.erase(0, name.find_first_not_of('.'));
    name.resize(std::min(name.find('.'), name.size()));
    return (name.empty() ? "mac" : name) + ".local";
}

std::string streamURL(std::string_view host, int port)
{
    return std::string(scheme) + std::string(host) + ":" + std::to_string(port);
}

bool isValidURL(std::string_view url)
{
    const auto colon = url.rfind(':');
    if (!url.starts_with(scheme) || colon < scheme.size())
        return false;
    const auto host = url.substr(scheme.size(), colon - scheme.size());
    const auto port = url.substr(colon + 1);
    return !host.empty() && std::all_of(host.begin(), host.end(), standsInHost) && text::isUtf8(host) &&
           !port.empty() && std::all_of(port.begin(), port.end(), isDigit);
}

std::string spokenAddress(std::string_view wifiIP, std::string_view localHostName, int port)
{
    std::string host;
    if (wifiIP == noAddress)
        host = localHostName;
    else
        for (const char character : wifiIP)
            host += character == '.' ? std::string(" dot ") : std::string(1, character);

    const auto number = std::to_string(port);
    std::string sentence = "Orvalen screen stream online. Open phone browser and type: ";
    sentence += host;
    sentence += " colon ";
    sentence += number;
    sentence += ". Or, ";
    sentence += localHostName;
    sentence += " colon ";
    sentence += number;
    sentence += ".";
    return sentence;
}

} // namespace orvalen
