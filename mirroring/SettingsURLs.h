#pragma once

#include <string_view>

/// Addresses of pages of macOS's system settings. Other systems show their page of the same kind.
namespace orvalen::settings_urls {

inline constexpr std::string_view displays = "x-apple.systempreferences:com.apple.Displays-Settings.extension";
inline constexpr std::string_view olderDisplays = "x-apple.systempreferences:com.apple.preference.displays";
inline constexpr std::string_view screenRecording =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture";
inline constexpr std::string_view accessibility =
    "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

} // namespace orvalen::settings_urls
