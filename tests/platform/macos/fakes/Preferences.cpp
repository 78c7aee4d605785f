#include "tests/platform/macos/fakes/Preferences.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <map>
#include <utility>

#include "tests/platform/macos/fakes/Calls.h"
#include "tests/platform/macos/fakes/CoreFoundation.h"

namespace orvalen::fake {

namespace {

std::map<std::string, CFTypeRef> values;
bool isWritable = true;

/// With its kind, which the database keeps.
std::string described(CFTypeRef value)
{
    if (!value)
        return "null";
    if (CFGetTypeID(value) == CFBooleanGetTypeID())
        return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) ? "boolean true" : "boolean false";
    if (CFGetTypeID(value) != CFNumberGetTypeID())
        return "something else";
    double number = 0.0;
    CFNumberGetValue(static_cast<CFNumberRef>(value), kCFNumberDoubleType, &number);
    char text[64];
    std::snprintf(text, sizeof text, "%s %.17g",
                  CFNumberIsFloatType(static_cast<CFNumberRef>(value)) ? "real" : "integer", number);
    return text;
}

} // namespace

namespace preferences {

void put(const std::string &key, CFTypeRef value)
{
    const auto before = value ? std::exchange(values[key], value) : nullptr;
    if (before)
        CFRelease(before);
}

void setWritable(bool writable)
{
    isWritable = writable;
}

void clear()
{
    for (const auto &[key, value] : std::exchange(values, {}))
        CFRelease(value);
    isWritable = true;
}

} // namespace preferences

} // namespace orvalen::fake

using namespace orvalen;

const CFStringRef kCFPreferencesCurrentApplication = CFSTR("this application");

CFPropertyListRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID)
{
    const auto name = fake::textOf(key);
    fake::note("CFPreferencesCopyAppValue " + name + " of " + fake::textOf(applicationID));
    const auto found = fake::values.find(name);
    return found == fake::values.end() ? nullptr : CFRetain(found->second);
}

void CFPreferencesSetAppValue(CFStringRef key, CFPropertyListRef value, CFStringRef applicationID)
{
    const auto name = fake::textOf(key);
    fake::note("CFPreferencesSetAppValue " + name + " " + fake::described(value) + " of " +
               fake::textOf(applicationID));
    fake::preferences::put(name, value ? CFRetain(value) : nullptr);
}

Boolean CFPreferencesAppSynchronize(CFStringRef applicationID)
{
    fake::note("CFPreferencesAppSynchronize " + fake::textOf(applicationID));
    return fake::isWritable;
}

double CFStringGetDoubleValue(CFStringRef str)
{
    const auto text = fake::textOf(str);
    const auto start = text.find_first_not_of(" \t");
    double value = 0.0;
    if (start != std::string::npos)
        std::from_chars(text.data() + start, text.data() + text.size(), value);
    return value;
}
