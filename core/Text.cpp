#include "core/Text.h"

#include <cstdint>
#include <limits>

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace orvalen::text {

namespace {

struct Extent
{
    std::size_t begin = 0; ///< Of the first character that is no white space.
    std::size_t end = 0;   ///< Behind the last one.
};

std::optional<Extent> extentOf(std::string_view bytes)
{
    if (bytes.size() > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    const auto *data = reinterpret_cast<const std::uint8_t *>(bytes.data());
    const auto size = static_cast<std::int32_t>(bytes.size());
    Extent extent;
    for (std::int32_t next = 0, here = 0; next < size; here = next) {
        UChar32 character = 0;
        U8_NEXT(data, next, size, character);
        if (character < 0)
            return std::nullopt;
        if (u_isUWhiteSpace(character))
            continue;
        if (extent.end == 0)
            extent.begin = static_cast<std::size_t>(here);
        extent.end = static_cast<std::size_t>(next);
    }
    return extent;
}

} // namespace

bool isUtf8(std::string_view bytes)
{
    return extentOf(bytes).has_value();
}

std::optional<std::string_view> trimmed(std::string_view bytes)
{
    const auto extent = extentOf(bytes);
    if (!extent)
        return std::nullopt;
    return bytes.substr(extent->begin, extent->end - extent->begin);
}

std::string lowerCased(std::string_view bytes)
{
    std::string lower;
    if (bytes.size() <= std::numeric_limits<std::int32_t>::max())
        icu::UnicodeString::fromUTF8({bytes.data(), static_cast<std::int32_t>(bytes.size())})
            .toLower(icu::Locale::getRoot())
            .toUTF8String(lower);
    return lower;
}

bool isPicture(char32_t sign)
{
    return u_hasBinaryProperty(static_cast<UChar32>(sign), UCHAR_EMOJI_PRESENTATION) != 0;
}

} // namespace orvalen::text
