#pragma once

#include <string>

#include "platform/ChildProcesses.h"
#include "platform/ProgramInstance.h"

namespace orvalen {

/// Whoever opens a bundle again, or clicks its icon in the Dock, makes the system send "reopen" to the program that
/// runs. Other ways lead to a second process: "open -n", the program in the bundle started by hand, a copy of the
/// bundle. That one has the system reopen the first.
///
/// AppKit answers that event itself until `serve`: it brings the application forward. For as long as this object lives
/// after that, `activate` does; what AppKit had installed is not put back.
class ProgramInstanceAppleEvents : public ProgramInstance
{
public:
    /// `processes` must outlive it.
    ProgramInstanceAppleEvents(std::string bundleIdentifier, ChildProcesses &processes);
    ~ProgramInstanceAppleEvents() override;

    ProgramInstanceAppleEvents(const ProgramInstanceAppleEvents &) = delete;
    ProgramInstanceAppleEvents &operator=(const ProgramInstanceAppleEvents &) = delete;

    /// False also where the other one cannot be asked to show itself.
    [[nodiscard]] bool begin() override;

    /// Wants AppKit's event loop to have begun: what AppKit installs there goes over ours.
    void serve(Requests requests) override;

    // For what the system calls.
    void reopen();

private:
    void install();

    const std::string bundleIdentifier;
    ChildProcesses &processes;
    Requests requests;
    int waiting = 0; ///< Reopened so often before somebody answered.
    bool isInstalled = false;
};

} // namespace orvalen
