#include "platform/macos/SpeechSay.h"

#include <string>
#include <system_error>

namespace orvalen {

void SpeechSay::speak(std::string_view text)
{
    try {
        (void)processes.launch("/usr/bin/say", {std::string(text)});
    } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then it is silent
    }
}

} // namespace orvalen
