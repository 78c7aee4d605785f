#include "platform/macos/HostNameScutil.h"

#include <system_error>

#include <unistd.h>

namespace orvalen {

namespace {

constexpr std::size_t longestName = 256; ///< Bytes with the end; with room for fewer the system refuses.

} // namespace

std::optional<std::string> HostNameScutil::multicastName()
{
    try {
        auto name = processes.outputOf("/usr/sbin/scutil", {"--get", "LocalHostName"},
                                       {.bytes = longestOutput, .time = patience});
        if (!name.empty())
            return name;
    } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then it tells nothing
    }
    return std::nullopt;
}

std::string HostNameScutil::processName()
{
    char name[longestName + 1] = {}; // one more than is filled: a name that was cut off may have no end
    return ::gethostname(name, longestName) == 0 ? name : "";
}

} // namespace orvalen
