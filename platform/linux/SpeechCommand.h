#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/ChildProcesses.h"
#include "platform/Speech.h"

namespace orvalen {

/// Speech by the first of the customary commands that is installed: the desktop's speech service, else a synthesiser.
/// What is still being said gives way to what is said next.
class SpeechCommand : public Speech
{
public:
    /// `searchPath`: folders with colons between them, looked through anew each time. `processes` must outlive it.
    SpeechCommand(ChildProcesses &processes, std::string searchPath);

    /// Throws std::system_error if the command that was found cannot be started.
    void speak(std::string_view text) override;

private:
    ChildProcesses &processes;
    std::string searchPath;
    std::mutex mutex;
    std::unique_ptr<ChildProcess> voice; ///< The last one. Speaks on when we are gone.
};

} // namespace orvalen
