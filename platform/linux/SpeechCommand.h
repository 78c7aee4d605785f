#pragma once

#include <string>
#include <vector>

#include "platform/Speech.h"

namespace orvalen {

class ChildProcesses;

/// Speech by the first of the customary commands that is installed: the desktop's speech service, else a synthesiser.
class SpeechCommand : public Speech
{
public:
    /// `searchPath`: folders with colons between them, looked through anew each time. `processes` must outlive it.
    SpeechCommand(ChildProcesses &processes, std::string searchPath)
        : processes(processes), searchPath(std::move(searchPath))
    {
    }

    /// Throws std::system_error if the command that was found cannot be started.
    void speak(std::string_view text) override;

private:
    ChildProcesses &processes;
    std::string searchPath;
};

} // namespace orvalen
