#pragma once

namespace orvalen {

/// Whether this session lets its screen be captured. Main thread.
class ScreenCaptureAccess
{
public:
    virtual ~ScreenCaptureAccess() = default;

    /// Found out without asking the user anything, and without capturing.
    [[nodiscard]] virtual bool isGranted() = 0;

    /// Lets the system ask the user, if it has a way to. Does not wait for the answer.
    virtual void request() = 0;
};

} // namespace orvalen
