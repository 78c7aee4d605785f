#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvalen {

struct NetworkInterface;

/// Under which addresses the stream server can be reached, and how they are written and spoken. Stateless.

/// Stands for "no address found" wherever an address for phones is kept.
inline constexpr std::string_view noAddress = "127.0.0.1";

/// The address for phones in the same network among the interfaces as the system lists them: that of the built-in
/// network ports if they have one, else the first usable one, else `noAddress`, as without a list (std::nullopt).
[[nodiscard]] std::string wifiAddressAmong(const std::optional<std::vector<NetworkInterface>> &interfaces);

/// The name by which multicast DNS finds this machine. `multicastName`: what the responder said, any bytes, white space
/// around it included; std::nullopt if it said nothing. `processName`: the fall-back, with or without a domain.
[[nodiscard]] std::string bonjourHost(const std::optional<std::string> &multicastName, std::string_view processName);

/// "http://host:port".
[[nodiscard]] std::string streamURL(std::string_view host, int port);

/// Whether a browser can make sense of what `streamURL` made.
[[nodiscard]] bool isValidURL(std::string_view url);

/// What the blind cast says.
[[nodiscard]] std::string spokenAddress(std::string_view wifiIP, std::string_view localHostName, int port);

} // namespace orvalen
