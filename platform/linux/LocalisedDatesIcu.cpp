#include "platform/linux/LocalisedDatesIcu.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace orvalen {

namespace {

/// The script that a name of the C library asks for behind its @, as ICU calls it; empty: the language's usual one.
std::string_view scriptOf(std::string_view modifier)
{
    if (modifier == "latin")
        return "Latn";
    if (modifier == "cyrillic")
        return "Cyrl";
    if (modifier == "devanagari")
        return "Deva";
    return {};
}

/// "sr_RS.UTF-8@latin" is sr_Latn_RS to ICU. A date has no use for the encoding.
std::string icuName(std::string_view name)
{
    const auto at = name.find('@');
    const auto script = at == std::string_view::npos ? std::string_view() : scriptOf(name.substr(at + 1));
    std::string result(name.substr(0, name.find_first_of(".@")));
    if (!script.empty())
        result.insert(std::min(result.find('_'), result.size()), "_" + std::string(script));
    return result;
}

/// The first of them that is set decides, as for the C library.
icu::Locale usersLocale()
{
    std::string_view name;
    for (const auto *variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        if (const char *value = std::getenv(variable); value && *value != '\0') {
            name = value;
            break;
        }
    }
    const auto wanted = icuName(name);
    const bool isNobodys = wanted.empty() || wanted == "C" || wanted == "POSIX";
    return icu::Locale::createFromName(isNobodys ? "en_US_POSIX" : wanted.c_str());
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
