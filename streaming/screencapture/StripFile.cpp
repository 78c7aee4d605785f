#include "streaming/screencapture/StripFile.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "streaming/screencapture/ContentHash.h"
#include "streaming/screencapture/Strips.h"

namespace orvalen {

namespace {

using namespace std::string_view_literals;

/// Changes with the comment's layout, with the hash, and with whatever else makes old strips useless.
constexpr auto signature = "Orvalen strips 1\n"sv;

constexpr auto endOfImage = "\xff\xd9"sv;
constexpr std::array restarts{"\xff\xd0"sv, "\xff\xd1"sv, "\xff\xd2"sv, "\xff\xd3"sv,
                              "\xff\xd4"sv, "\xff\xd5"sv, "\xff\xd6"sv, "\xff\xd7"sv};

/// What follows the strip of that index.
std::string_view markerAfter(std::size_t index, std::size_t count)
{
    return index + 1 == count ? endOfImage : restarts[index % restarts.size()];
}

/// One strip's entry in the comment. In the machine's byte order: the file serves the next capture on this machine.
struct Entry
{
    std::uint64_t pixels = 0; ///< What the strip shows.
    std::uint64_t bytes = 0;  ///< The contentHash of its bytes in the file.
    std::uint64_t length = 0; ///< Of its bytes in the file.
};

std::string blankComment(const PictureFormat &format)
{
    std::string comment(signature);
    for (const auto number : {format.width, format.height, StripEncoder::quality, int{format.layout.red},
                              int{format.layout.green}, int{format.layout.blue}})
        comment += std::to_string(number) + ' ';
    comment += '\n';
    return comment + std::string(strips::count(format.height) * sizeof(Entry), '\0');
}

} // namespace

StripFile::StripFile(const PictureFormat &format) : format(format)
{
    const auto comment = blankComment(format);
    head = StripEncoder::head(format, comment);
    commentAt = head.find(comment) + comment.size() - strips::count(format.height) * sizeof(Entry);
}

std::vector<std::string_view> StripFile::pieces(std::span<const EncodedStrip> strips)
{
    std::vector<std::string_view> pieces;
    pieces.reserve(1 + 2 * strips.size());
    pieces.emplace_back(head);
    for (std::size_t i = 0; i < strips.size(); ++i) {
        const Entry entry{strips[i].pixels, contentHash(strips[i].bytes.data(), strips[i].bytes.size()),
                          strips[i].bytes.size()};
        std::memcpy(head.data() + commentAt + i * sizeof entry, &entry, sizeof entry);
        pieces.push_back(strips[i].bytes);
        pieces.push_back(markerAfter(i, strips.size()));
    }
    return pieces;
}

std::optional<std::vector<EncodedStrip>> StripFile::strips(std::string_view file) const
{
    const std::size_t count = strips::count(format.height);
    const auto entriesEnd = commentAt + count * sizeof(Entry);
    if (file.size() < head.size() || file.substr(0, commentAt) != std::string_view(head).substr(0, commentAt) ||
        file.substr(entriesEnd, head.size() - entriesEnd) != std::string_view(head).substr(entriesEnd))
        return std::nullopt;

    std::vector<EncodedStrip> found(count);
    auto rest = file.substr(head.size());
    for (std::size_t i = 0; i < count; ++i) {
        Entry entry;
        std::memcpy(&entry, file.data() + commentAt + i * sizeof entry, sizeof entry);
        const auto marker = markerAfter(i, count);
        if (rest.size() < marker.size() || entry.length > rest.size() - marker.size())
            return std::nullopt;
        found[i] = {entry.pixels, rest.substr(0, entry.length)};
        rest.remove_prefix(entry.length);
        if (!rest.starts_with(marker) || contentHash(found[i].bytes.data(), found[i].bytes.size()) != entry.bytes)
            return std::nullopt;
        rest.remove_prefix(marker.size());
    }
    if (!rest.empty())
        return std::nullopt;
    return found;
}

} // namespace orvalen
