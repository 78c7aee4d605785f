#pragma once

#include "platform/ChildProcesses.h"
#include "platform/Speech.h"

namespace orvalen {

/// The system's voice, by `say`, which must not be given a text that begins with a hyphen: it would be an option. One
/// that is still speaking speaks on. A voice that cannot be started: silence.
class SpeechSay : public Speech
{
public:
    /// `processes` must outlive it.
    explicit SpeechSay(ChildProcesses &processes) : processes(processes) {}

    void speak(std::string_view text) override;

private:
    ChildProcesses &processes;
};

} // namespace orvalen
