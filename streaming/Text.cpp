#include "streaming/Text.h"

#include <cstdint>
#include <limits>

#include <unicode/uchar.h>
#include <unicode/ustring.h>
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

std::optional<std::string> lowerCased(std::string_view bytes)
{
    if (!isUtf8(bytes))
        return std::nullopt;
    // A letter takes no more units in UTF-16 than bytes in UTF-8, and becomes three letters at most.
    const auto size = static_cast<std::int32_t>(bytes.size());
    std::u16string wide(bytes.size(), u'\0');
    std::u16string small(3 * bytes.size(), u'\0');
    std::string result(9 * bytes.size(), '\0');
    UErrorCode status = U_ZERO_ERROR;
    std::int32_t length = 0;
    u_strFromUTF8(wide.data(), size, &length, bytes.data(), size, &status);
    length = u_strToLower(small.data(), static_cast<std::int32_t>(small.size()), wide.data(), length, "", &status);
    u_strToUTF8(result.data(), static_cast<std::int32_t>(result.size()), &length, small.data(), length, &status);
    if (U_FAILURE(status))
        return std::nullopt;
    result.resize(static_cast<std::size_t>(length));
    return result;
}

} // namespace orvalen::text
