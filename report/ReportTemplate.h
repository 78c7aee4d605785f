#pragma once

#include <array>
#include <cstddef>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace orvalen {

/// The places of the report's page that are filled in. In template.html they are marked by these names in double
/// braces.
enum class ReportMark
{
    date,
    bridgeTemp,
    bridgeBadge,
    bridgeStatus,
    pmuTemp,
    socTemp,
    socMax,
    batteryTemp,
    batteryPercent,
    powerSource,
    makerSite,
    makerSiteName,
    makerToolsSite,
    makerToolsSiteName,
};

/// In the order of ReportMark.
inline constexpr std::array<std::string_view, 14> reportMarkNames = {
    "date",      "bridgeTemp",    "bridgeBadge",    "bridgeStatus",      "pmuTemp",
    "socTemp",   "socMax",        "batteryTemp",    "batteryPercent",    "powerSource",
    "makerSite", "makerSiteName", "makerToolsSite", "makerToolsSiteName"};

struct ReportTemplate
{
    struct Place
    {
        std::string_view before; ///< All that stands between the place before and this one.
        ReportMark mark = {};
    };
    std::array<Place, reportMarkNames.size()> places; ///< In the order of the page.
    std::string_view end;                             ///< What follows the last of them.

    /// Takes a page apart. Throws std::invalid_argument, which where the page is compiled in is an error of the build,
    /// unless each mark stands in it exactly once and nothing else in double braces.
    [[nodiscard]] static constexpr ReportTemplate of(std::string_view page);
};

/// The page that is in the program: template.html.
[[nodiscard]] const ReportTemplate &reportTemplate();

constexpr ReportTemplate ReportTemplate::of(std::string_view page)
{
    constexpr std::string_view open = "{{", close = "}}";
    ReportTemplate result = {};
    std::array<bool, reportMarkNames.size()> seen = {};
    for (auto &place : result.places) {
        const auto begin = page.find(open);
        if (begin == std::string_view::npos)
            throw std::invalid_argument("a mark of the report is missing in its page");
        place.before = page.substr(0, begin);
        page.remove_prefix(begin + open.size());
        const auto name = page.substr(0, page.find(close));
        std::size_t index = 0;
        while (index < seen.size() && reportMarkNames[index] != name)
            ++index;
        if (index == seen.size())
            throw std::invalid_argument("the report's page has a mark that nobody knows");
        if (std::exchange(seen[index], true))
            throw std::invalid_argument("the report's page has a mark twice");
        place.mark = static_cast<ReportMark>(index);
        page.remove_prefix(name.size() + close.size());
    }
    if (page.find(open) != std::string_view::npos)
        throw std::invalid_argument("the report's page has a mark too many");
    result.end = page;
    return result;
}

} // namespace orvalen
