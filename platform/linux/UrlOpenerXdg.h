#pragma once

#include <string>

#include "platform/ChildProcesses.h"
#include "platform/UrlOpener.h"

namespace orvalen {

/// Opens addresses the way the desktop does, by `xdg-open`. What the opened program writes reaches nobody.
class UrlOpenerXdg : public UrlOpener
{
public:
    /// `searchPath`: folders with colons between them, looked through anew each time. `processes` must outlive it.
    UrlOpenerXdg(ChildProcesses &processes, std::string searchPath);

    void open(std::string_view url) override;

private:
    ChildProcesses &processes;
    const std::string searchPath;
};

} // namespace orvalen
