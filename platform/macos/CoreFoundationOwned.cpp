#include "platform/macos/CoreFoundationOwned.h"

namespace orvalen::corefoundation {

Owned<CFStringRef> makeString(std::string_view text)
{
    return Owned(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8 *>(text.data()),
                                         static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::string text(CFTypeRef object)
{
    if (!isOf(CFStringGetTypeID(), object))
        return {};
    const auto string = static_cast<CFStringRef>(object);
    const auto all = CFRangeMake(0, CFStringGetLength(string));
    CFIndex size = 0;
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, 0, false, nullptr, 0, &size);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    CFStringGetBytes(string, all, kCFStringEncodingUTF8, 0, false, reinterpret_cast<UInt8 *>(bytes.data()), size,
                     nullptr);
    return bytes;
}

bool isOf(CFTypeID type, CFTypeRef object)
{
    return object && CFGetTypeID(object) == type;
}

} // namespace orvalen::corefoundation
