#pragma once

#include <array>
#include <string>
#include <string_view>

namespace orvalen {

/// The maker's domain: every address of the maker's ends in it.
inline constexpr std::string_view makerDomain = "quenmark.example";

namespace maker_site_detail {

/// Texts one after another, put together while compiling.
template <const std::string_view &...Texts>
struct Joined
{
    static constexpr auto characters = [] {
        std::array<char, (Texts.size() + ...)> joined{};
        auto *end = joined.begin();
        const auto append = [&end](std::string_view text) {
            for (const char c : text)
                *end++ = c;
        };
        (append(Texts), ...);
        return joined;
    }();
    static constexpr std::string_view text{characters.data(), characters.size()};
};

inline constexpr std::string_view siteStart = "https://";
inline constexpr std::string_view toolsSiteStart = "https://tools.";
inline constexpr std::string_view siteEnd = "/";

} // namespace maker_site_detail

/// Where the maker is at home on the web.
inline constexpr std::string_view makerSite =
    maker_site_detail::Joined<maker_site_detail::siteStart, makerDomain, maker_site_detail::siteEnd>::text;

/// The maker's tools that run in a browser.
inline constexpr std::string_view makerToolsSite =
    maker_site_detail::Joined<maker_site_detail::toolsSiteStart, makerDomain, maker_site_detail::siteEnd>::text;

/// A page of one of these sites.
[[nodiscard]] inline std::string sitePage(std::string_view site, std::string_view page)
{
    return std::string(site).append(page);
}

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
