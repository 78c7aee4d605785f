#pragma once

#include "platform/ProgramInstance.h"

namespace orvalen {

/// The system starts a bundle once in a session. Whoever opens it again, or clicks its icon in the Dock, makes the
/// system send "reopen" to the program that runs.
///
/// AppKit answers that event itself until `serve`: it brings the application forward. For as long as this object lives
/// after that, `activate` does; what AppKit had installed is not put back.
class ProgramInstanceAppleEvents : public ProgramInstance
{
public:
    ProgramInstanceAppleEvents() = default;
    ~ProgramInstanceAppleEvents() override;

    ProgramInstanceAppleEvents(const ProgramInstanceAppleEvents &) = delete;
    ProgramInstanceAppleEvents &operator=(const ProgramInstanceAppleEvents &) = delete;

    /// True.
    [[nodiscard]] bool begin() override;

    /// Wants AppKit's event loop to have begun: what AppKit installs there goes over ours.
    void serve(Requests requests) override;

    // For what the system calls.
    void reopen();

private:
    void install();

    Requests requests;
    int waiting = 0; ///< Reopened so often before somebody answered.
    bool isInstalled = false;
};

} // namespace orvalen
