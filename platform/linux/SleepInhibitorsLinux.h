#pragma once

#include <chrono>
#include <string>

#include "platform/linux/PowerAssertionsFirstGranted.h"

namespace orvalen {

/// Who asks to keep the machine awake, as the services want to know it.
struct SleepApplicant
{
    std::string name; ///< For people.
    std::string id;   ///< That of the desktop entry.
};

/// How long one service is waited for.
struct SleepPatience
{
    std::chrono::milliseconds answer{500};    ///< To a question, its start included.
    std::chrono::milliseconds response{1000}; ///< To a request that it hands on to somebody else.
};

/// The services that keep a Linux machine awake, in the order in which they are asked.
[[nodiscard]] PowerAssertionsFirstGranted::Ways linuxSleepInhibitors(const SleepApplicant &applicant,
                                                                     const SleepPatience &patience = {});

} // namespace orvalen
