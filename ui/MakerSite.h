#pragma once

#include <string_view>

namespace orvalen {

/// Where the maker is at home on the web.
inline constexpr std::string_view makerSite = "https://quenmark.example/";

} // namespace orvalen
