#include "platform/macos/SettingsStoreDefaults.h"

#include <algorithm>
#include <string>

#include "platform/macos/CoreFoundationOwned.h"

namespace orvalen {

namespace {

using corefoundation::isOf;
using corefoundation::Owned;

Owned<CFPropertyListRef> valueOf(std::string_view key)
{
    return Owned(CFPreferencesCopyAppValue(corefoundation::makeString(key).get(), kCFPreferencesCurrentApplication));
}

void write(std::string_view key, CFPropertyListRef value)
{
    CFPreferencesSetAppValue(corefoundation::makeString(key).get(), value, kCFPreferencesCurrentApplication);
    CFPreferencesAppSynchronize(kCFPreferencesCurrentApplication); // where it fails, the value lasts for the run
}

double numberOf(CFNumberRef number)
{
    double value = 0.0;
    CFNumberGetValue(number, kCFNumberDoubleType, &value);
    return value;
}

/// As NSString's boolValue: behind white space, a sign and zeros, only the next character counts.
bool readsAsTrue(std::string_view text)
{
    const auto skip = [&text](std::string_view characters) {
        text.remove_prefix(std::min(text.find_first_not_of(characters), text.size()));
    };
    skip(" \t");
    if (text.starts_with('+') || text.starts_with('-'))
        text.remove_prefix(1);
    skip("0");
    return text.find_first_of("TtYy123456789") == 0;
}

} // namespace

bool SettingsStoreDefaults::has(std::string_view key)
{
    return static_cast<bool>(valueOf(key));
}

bool SettingsStoreDefaults::readBool(std::string_view key)
{
    const auto value = valueOf(key);
    if (isOf(CFBooleanGetTypeID(), value.get()))
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value.get()));
    if (isOf(CFNumberGetTypeID(), value.get()))
        return numberOf(static_cast<CFNumberRef>(value.get())) != 0.0;
    return readsAsTrue(corefoundation::text(value.get()));
}

double SettingsStoreDefaults::readDouble(std::string_view key)
{
    const auto value = valueOf(key);
    if (isOf(CFNumberGetTypeID(), value.get()))
        return numberOf(static_cast<CFNumberRef>(value.get()));
    if (isOf(CFBooleanGetTypeID(), value.get()))
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value.get())) ? 1.0 : 0.0;
    if (isOf(CFStringGetTypeID(), value.get()))
        return CFStringGetDoubleValue(static_cast<CFStringRef>(value.get())); // the same in every language
    return 0.0;
}

void SettingsStoreDefaults::writeBool(std::string_view key, bool value)
{
    write(key, value ? kCFBooleanTrue : kCFBooleanFalse);
}

void SettingsStoreDefaults::writeDouble(std::string_view key, double value)
{
    write(key, Owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &value)).get());
}

} // namespace orvalen
