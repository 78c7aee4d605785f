#pragma once

#include <chrono>
#include <string>

#include "platform/ScreenCaptureAccess.h"
#include "platform/posix/BoundedQuestion.h"

namespace orvalen {

/// Granted where something can capture this session: a command named "screencapture" on the search path, or else an
/// X server of the session's own, which asks nobody. A Wayland session's guest server shows itself alone and counts as
/// none.
class ScreenCaptureAccessLinux : public ScreenCaptureAccess
{
public:
    /// `display`: an X server's name; empty for the one that the environment names. A server that has not answered
    /// within `limit` is none.
    explicit ScreenCaptureAccessLinux(const std::string &display = {},
                                      std::chrono::nanoseconds limit = std::chrono::milliseconds(100));

    /// Takes about a millisecond where a server answers.
    [[nodiscard]] bool isGranted() override;

    /// Nothing: an X server has no such dialog.
    void request() override {}

private:
    BoundedQuestion<bool> hasServer;
};

} // namespace orvalen
