#include "platform/linux/LocalisedDatesIcu.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <memory>
#include <string_view>
#include <utility>

namespace orvalen {

namespace {

/// The first of them that is set decides, as for the C library. A date has no use for the encoding in it.
icu::Locale usersLocale()
{
    std::string_view name;
    for (const auto *variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        if (const char *value = std::getenv(variable); value && *value != '\0') {
            name = value;
            break;
        }
    }
    name = name.substr(0, name.find_first_of(".@"));
    if (name.empty() || name == "C" || name == "POSIX")
        name = "en_US_POSIX";
    return icu::Locale::createFromName(std::string(name).c_str());
}

} // namespace

LocalisedDatesIcu::LocalisedDatesIcu(std::function<Time()> present) : present(std::move(present)) {}

std::string LocalisedDatesIcu::now()
{
    using Milliseconds = std::chrono::duration<UDate, std::milli>;
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(icu::DateFormat::kLong, icu::DateFormat::kMedium, usersLocale()));
    if (!format) // no data, no memory
        return {};
    format->adoptTimeZone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString text;
    format->format(Milliseconds(present().time_since_epoch()).count(), text);
    std::string utf8;
    text.toUTF8String(utf8);
    return utf8;
}

} // namespace orvalen
