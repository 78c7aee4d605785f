#pragma once

#include "platform/ChildProcesses.h"
#include "platform/Notifications.h"

namespace orvalen {

/// Notifications by a line of AppleScript, in a process of its own. The texts stand between double quotes as they are:
/// one with a double quote or a backslash in it breaks the line, and nothing appears.
class NotificationsOsascript : public Notifications
{
public:
    /// `processes` must outlive it.
    explicit NotificationsOsascript(ChildProcesses &processes) : processes(processes) {}

    void post(std::string_view title, std::string_view message) override;

private:
    ChildProcesses &processes;
};

} // namespace orvalen
