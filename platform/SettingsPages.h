#pragma once

#include <string_view>

namespace orvalen {

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
