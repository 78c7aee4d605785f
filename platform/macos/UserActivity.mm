#include "platform/macos/UserActivity.h"

#include "platform/macos/FoundationString.h"

#import <Foundation/Foundation.h>

namespace orvalen {

struct UserActivity::Token
{
    id<NSObject> activity;
};

// What the system leaves to a pool is freed here: the main loop does not run yet.
UserActivity::UserActivity(std::string_view reason)
{
    @autoreleasepool {
        token = std::make_unique<Token>(
            Token{[NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                               reason:foundationString(reason)]});
    }
}

UserActivity::~UserActivity()
{
    @autoreleasepool {
        [NSProcessInfo.processInfo endActivity:token->activity];
    }
}

} // namespace orvalen
