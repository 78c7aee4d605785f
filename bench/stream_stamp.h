#pragma once

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <string_view>

namespace orvalen::bench {

/// What a test frame says of itself, twice: in a comment segment right behind its first marker, and again right before
/// its last one. Decoders skip both. A frame whose two stamps differ is made of two.
struct StreamStamp
{
    std::int64_t takenAt = 0;   ///< Nanoseconds since the epoch.
    std::uint32_t sequence = 0; ///< Tells apart what was taken at the same time.

    bool operator==(const StreamStamp &) const = default;

    static constexpr std::string_view startOfImage = "\xff\xd8";
    static constexpr std::string_view endOfImage = "\xff\xd9";
    static constexpr std::size_t segmentSize = 43;

    [[nodiscard]] std::string segment() const
    {
        char text[segmentSize + 1] = {};
        std::snprintf(text, sizeof text, "\xff\xfe..orvalen %020lld %010u", static_cast<long long>(takenAt), sequence);
        text[2] = 0;
        text[3] = segmentSize - 2;
        return {text, segmentSize};
    }

    /// The frame `jpeg` with this stamp at either end; it must have both of its markers.
    [[nodiscard]] std::string on(std::string_view jpeg) const
    {
        std::string frame;
        frame.reserve(jpeg.size() + 2 * segmentSize);
        frame += startOfImage;
        frame += segment();
        frame += jpeg.substr(2, jpeg.size() - 4);
        frame += segment();
        frame += endOfImage;
        return frame;
    }

    [[nodiscard]] static std::optional<StreamStamp> read(std::string_view segment)
    {
        StreamStamp stamp;
        if (segment.size() != segmentSize || segment.substr(4, 8) != "orvalen ")
            return std::nullopt;
        const char *begin = segment.data();
        const auto time = std::from_chars(begin + 12, begin + 32, stamp.takenAt);
        const auto number = std::from_chars(begin + 33, begin + 43, stamp.sequence);
        if (time.ec != std::errc() || number.ec != std::errc() || stamp.segment() != segment)
            return std::nullopt;
        return stamp;
    }
};

} // namespace orvalen::bench
