#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/ChildProcesses.h"
#include "platform/Speech.h"

namespace orvalen {

/// Speech by the first of the customary commands that works: the desktop's speech service, else a synthesiser. Takes up
/// to a second, in which one that is installed may fail.
/// What is still being said gives way to what is said next.
class SpeechCommand : public Speech
{
public:
    /// `searchPath`: folders with colons between them, looked through anew each time. `processes` must outlive it.
    SpeechCommand(ChildProcesses &processes, std::string searchPath);

    void speak(std::string_view text) override;

private:
    ChildProcesses &processes;
    std::string searchPath;
    std::mutex mutex;
    std::unique_ptr<ChildProcess> voice; ///< The last one. Speaks on when we are gone.
};

} // namespace orvalen
