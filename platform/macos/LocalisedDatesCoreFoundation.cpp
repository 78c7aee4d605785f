#include "platform/macos/LocalisedDatesCoreFoundation.h"

#include "platform/macos/CoreFoundationOwned.h"

namespace orvalen {

std::string LocalisedDatesCoreFoundation::now()
{
    using corefoundation::Owned;
    CFTimeZoneResetSystem(); // else the zone stays the one of the first date that this process has written
    const Owned locale(CFLocaleCopyCurrent());
    const Owned formatter(CFDateFormatterCreate(kCFAllocatorDefault, locale.get(), kCFDateFormatterLongStyle,
                                                kCFDateFormatterMediumStyle));
    if (!formatter)
        return {};
    const Owned date(
        CFDateFormatterCreateStringWithAbsoluteTime(kCFAllocatorDefault, formatter.get(), CFAbsoluteTimeGetCurrent()));
    return corefoundation::text(date.get());
}

} // namespace orvalen
