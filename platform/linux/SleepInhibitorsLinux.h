#pragma once

#include <string>

#include "platform/linux/PowerAssertionsFirstGranted.h"
#include "platform/linux/SleepPatience.h"

namespace orvalen {

/// Who asks to keep the machine awake, as the services want to know it.
struct SleepApplicant
{
    std::string name; ///< For people.
    std::string id;   ///< That of the desktop entry.
};

/// The services that keep a Linux machine awake, in the order in which they are asked.
[[nodiscard]] PowerAssertionsFirstGranted::Ways linuxSleepInhibitors(const SleepApplicant &applicant,
                                                                     const SleepPatience &patience = {});

} // namespace orvalen
