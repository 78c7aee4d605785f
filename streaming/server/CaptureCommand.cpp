#include "streaming/server/CaptureCommand.h"

#include <csignal>
#include <exception>

#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace orvalen {

CaptureCommand::CaptureCommand(std::string_view ownFolder, std::mutex &descriptors, std::chrono::nanoseconds patience)
    : descriptors(descriptors), search(contract::captureCommand, ownFolder), watchdog(patience)
{
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    ::posix_spawnattr_init(&attributes);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setsigdefault(&attributes, &all);
    ::posix_spawnattr_setpgroup(&attributes, 0);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
}

CaptureCommand::~CaptureCommand()
{
    ::posix_spawnattr_destroy(&attributes);
}

bool CaptureCommand::run(const char *const *arguments) noexcept
{
    pid_t child = 0;
    try {
        const std::lock_guard lock(descriptors);
        const char *const program = search.find(environmentSearchPath());
        if (!program)
            return false;
        // The arguments are not changed; the interface is older than const.
        if (::posix_spawn(&child, program, nullptr, &attributes, const_cast<char *const *>(arguments), environ) != 0)
            return false;
    } catch (const std::exception &) {
        return false; // no memory for the command's name
    }
    const int status = watchdog.waitFor(child);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace orvalen
