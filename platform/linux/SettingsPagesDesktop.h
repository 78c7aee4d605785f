#pragma once

#include <string>

#include "platform/ChildProcesses.h"
#include "platform/SettingsPages.h"

namespace orvalen {

/// The settings program of whatever desktop this is, opened at the page of the same kind.
class SettingsPagesDesktop : public SettingsPages
{
public:
    /// `desktop`: the names under which the session goes, the closest first, with colons between them (as
    /// XDG_CURRENT_DESKTOP has them); the first one that is known counts. `searchPath`: folders with colons between
    /// them, looked through anew each time. `processes` must outlive it.
    SettingsPagesDesktop(ChildProcesses &processes, std::string desktop, std::string searchPath);

    bool open(std::string_view url) override;

private:
    ChildProcesses &processes;
    const std::string desktop;
    const std::string searchPath;
};

} // namespace orvalen
