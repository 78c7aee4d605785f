#include "platform/macos/SoundsAfplay.h"

#include <string>
#include <system_error>

namespace orvalen {

void SoundsAfplay::play(std::string_view name)
{
    try {
        (void)processes.launch("/usr/bin/afplay", {"/System/Library/Sounds/" + std::string(name) + ".aiff"});
    } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then it is silent
    }
}

} // namespace orvalen
