#pragma once

#include <string_view>

namespace orvalen {

/// Where the maker is at home on the web.
inline constexpr std::string_view makerSite = "https://quenmark.example/";

/// The maker's tools that run in a browser.
inline constexpr std::string_view makerToolsSite = "https://tools.quenmark.example/";

/// An address as people write it: without scheme and closing slash.
[[nodiscard]] constexpr std::string_view siteName(std::string_view address)
{
    if (const auto scheme = address.find("://"); scheme != std::string_view::npos)
        address.remove_prefix(scheme + 3);
    if (address.ends_with('/'))
        address.remove_suffix(1);
    return address;
}

} // namespace orvalen
