#include "platform/macos/RunningApplications.h"

#include <unistd.h>

#include "platform/macos/FoundationString.h"

#import <AppKit/AppKit.h>

namespace orvalen {

// What the system leaves to a pool is freed here: the main loop does not run yet.
bool isRunningElsewhere(std::string_view bundleIdentifier)
{
    @autoreleasepool {
        for (NSRunningApplication *const application in
             [NSRunningApplication runningApplicationsWithBundleIdentifier:foundationString(bundleIdentifier)])
            if (application.processIdentifier != getpid() && !application.terminated)
                return true;
        return false;
    }
}

} // namespace orvalen
