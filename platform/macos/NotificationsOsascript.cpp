#include "platform/macos/NotificationsOsascript.h"

#include <string>
#include <system_error>

namespace orvalen {

void NotificationsOsascript::post(std::string_view title, std::string_view message)
{
    std::string script = "display notification \"";
    script += message;
    script += "\" with title \"";
    script += title;
    script += "\"";
    try {
        (void)processes.launch("/usr/bin/osascript", {"-e", script});
    } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then nothing appears
    }
}

} // namespace orvalen
