#pragma once

#include "platform/SettingsPages.h"
#include "platform/UrlOpener.h"

namespace orvalen {

/// The pages of the system's settings, which are addresses like others: whoever opens those knows what to do with them.
class SettingsPagesWorkspace : public SettingsPages
{
public:
    /// `urls` must outlive it.
    explicit SettingsPagesWorkspace(UrlOpener &urls) : urls(urls) {}

    bool open(std::string_view url) override;

private:
    UrlOpener &urls;
};

} // namespace orvalen
