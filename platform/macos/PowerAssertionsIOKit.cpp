#include "platform/macos/PowerAssertionsIOKit.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

#include "platform/macos/CoreFoundationOwned.h"

namespace orvalen {

std::optional<std::uint32_t> PowerAssertionsIOKit::create(const PowerAssertion &assertion)
{
    const auto type = corefoundation::makeString(assertion.type);
    const auto name = corefoundation::makeString(assertion.name);
    IOPMAssertionID identifier = kIOPMNullAssertionID;
    if (IOPMAssertionCreateWithName(type.get(), assertion.level, name.get(), &identifier) != kIOReturnSuccess)
        return std::nullopt;
    return identifier;
}

void PowerAssertionsIOKit::release(std::uint32_t identifier)
{
    IOPMAssertionRelease(identifier);
}

} // namespace orvalen
