#pragma once

#include <string_view>

namespace orvalen {

/// Addresses of pages of macOS's system settings. Other systems show their page of the same kind.
namespace settings_urls {

inline constexpr std::string_view displays = "x-apple.systempreferences:com.apple.Displays-Settings.extension";
inline constexpr std::string_view olderDisplays = "x-apple.systempreferences:com.apple.preference.displays";
inline constexpr std::string_view screenRecording =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";
inline constexpr std::string_view accessibility =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

} // namespace settings_urls

/// The system's own settings. Main thread only.
class SettingsPages
{
public:
    virtual ~SettingsPages() = default;

    /// Shows the page that `url` stands for (an address of macOS's system settings) and returns at once. A system
    /// without such a page: nothing happens. False only if the text cannot be made a URL at all.
    virtual bool open(std::string_view url) = 0;
};

} // namespace orvalen
