#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "streaming/screencapture/StripEncoder.h"

namespace orvalen {

struct EncodedStrip
{
    std::uint64_t pixels = 0; ///< Their contentHash, the pointer included.
    std::string_view bytes;   ///< As the encoder made them.
};

/// How strips are put together to a picture's file, and found again in it: a JPEG like any other, with a comment that
/// tells of each strip what it shows and how long it is.
class StripFile
{
public:
    explicit StripFile(const PictureFormat &format);

    /// The file of these strips, one after the other. The pieces live as long as the strips' bytes and this object
    /// do, and until the next call.
    [[nodiscard]] std::vector<std::string_view> pieces(std::span<const EncodedStrip> strips);

    /// The strips of a file, in that file's memory. std::nullopt unless it is, to the last byte, a file that this
    /// version has written for a picture of this format. Nothing in it is believed before it is checked.
    [[nodiscard]] std::optional<std::vector<EncodedStrip>> strips(std::string_view file) const;

private:
    const PictureFormat format;
    std::string head; ///< All before the first strip.
    std::size_t commentAt = 0;
};

} // namespace orvalen
