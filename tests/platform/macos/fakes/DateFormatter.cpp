#include "tests/platform/macos/fakes/DateFormatter.h"

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"

namespace orvalen::fake {

DateFormatter &dateFormatter()
{
    static DateFormatter answers;
    return answers;
}

namespace {

std::string nameOrNull(CFTypeRef opaque)
{
    return opaque ? nameOf(opaque) : "null";
}

const char *nameOfAllocator(CFAllocatorRef allocator)
{
    return allocator == kCFAllocatorDefault ? "default" : "another";
}

} // namespace

} // namespace orvalen::fake

using namespace orvalen;

CFAbsoluteTime CFAbsoluteTimeGetCurrent()
{
    fake::note("CFAbsoluteTimeGetCurrent");
    return fake::dateFormatter().present;
}

CFLocaleRef CFLocaleCopyCurrent()
{
    fake::note("CFLocaleCopyCurrent");
    return fake::dateFormatter().hasLocale ? static_cast<CFLocaleRef>(fake::makeOpaque("user's-locale")) : nullptr;
}

void CFTimeZoneResetSystem()
{
    fake::note("CFTimeZoneResetSystem");
}

CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale, CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle)
{
    fake::note("CFDateFormatterCreate %s %s %ld %ld", fake::nameOfAllocator(allocator),
               fake::nameOrNull(locale).c_str(), CFIndex{dateStyle}, CFIndex{timeStyle});
    if (!fake::dateFormatter().isMade)
        return nullptr;
    return static_cast<CFDateFormatterRef>(const_cast<void *>(fake::makeOpaque("formatter")));
}

CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef allocator, CFDateFormatterRef formatter,
                                                        CFAbsoluteTime at)
{
    fake::note("CFDateFormatterCreateStringWithAbsoluteTime %s %s %.3f", fake::nameOfAllocator(allocator),
               fake::nameOrNull(formatter).c_str(), at);
    const auto &text = fake::dateFormatter().text;
    return text ? static_cast<CFStringRef>(fake::makeString(*text)) : nullptr;
}
