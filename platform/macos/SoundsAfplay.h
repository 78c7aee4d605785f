#pragma once

#include "platform/ChildProcesses.h"
#include "platform/Sounds.h"

namespace orvalen {

/// The system's own sounds, by `afplay`. A player that cannot be started: silence.
class SoundsAfplay : public Sounds
{
public:
    /// `processes` must outlive it.
    explicit SoundsAfplay(ChildProcesses &processes) : processes(processes) {}

    void play(std::string_view name) override;

private:
    ChildProcesses &processes;
};

} // namespace orvalen
