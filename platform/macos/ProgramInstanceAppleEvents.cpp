#include "platform/macos/ProgramInstanceAppleEvents.h"

#include <Carbon/Carbon.h>

#include <system_error>
#include <utility>

#include "platform/macos/RunningApplications.h"

namespace orvalen {

namespace {

OSErr reopened(const AppleEvent *, AppleEvent *, SRefCon instance)
{
    static_cast<ProgramInstanceAppleEvents *>(instance)->reopen();
    return noErr;
}

} // namespace

ProgramInstanceAppleEvents::ProgramInstanceAppleEvents(std::string bundleIdentifier, ChildProcesses &processes)
    : bundleIdentifier(std::move(bundleIdentifier)), processes(processes)
{
}

ProgramInstanceAppleEvents::~ProgramInstanceAppleEvents()
{
    if (isInstalled)
        AERemoveEventHandler(kCoreEventClass, kAEReopenApplication, reopened, false);
}

bool ProgramInstanceAppleEvents::begin()
{
    if (isRunningElsewhere(bundleIdentifier)) {
        try {
            (void)processes.launch("/usr/bin/open", {"-b", bundleIdentifier});
        } catch (const std::system_error &) { // NOLINT(bugprone-empty-catch): then it shows itself when it is clicked
        }
        return false;
    }
    install();
    return true;
}

void ProgramInstanceAppleEvents::serve(Requests answers)
{
    requests = std::move(answers);
    install(); // again, over what AppKit has put in the place of it
    for (; waiting > 0; --waiting)
        requests.activate({});
}

void ProgramInstanceAppleEvents::reopen()
{
    if (requests.activate)
        requests.activate({});
    else
        ++waiting;
}

void ProgramInstanceAppleEvents::install()
{
    if (AEInstallEventHandler(kCoreEventClass, kAEReopenApplication, reopened, this, false) == noErr)
        isInstalled = true;
}

} // namespace orvalen
