#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "streaming/screencapture/Pixels.h"

namespace orvalen {

/// What all strips of a picture share.
struct PictureFormat
{
    int width = 0;
    int height = 0;
    PixelLayout layout;

    bool operator==(const PictureFormat &) const = default;
};

/// Encodes strips of one picture, each by itself: side by side on several threads, and again without the others when it
/// alone has changed. In the file each is a restart interval, after which every decoder starts afresh.
///
/// One thread at a time; what has been encoded stays where it is for as long as the encoder lives.
class StripEncoder
{
public:
    /// Of 0 to 100. Colours are stored at half the resolution, which halves the work and the bytes. At 80 the edges of
    /// black and coloured text of ten pixels stay clean on a phone; from there on each step costs bytes on the air that
    /// a reader does not see.
    static constexpr int quality = 80;

    /// Decoders count no further.
    static constexpr int greatestSide = 65500;

    /// Throws CaptureError if no JPEG can be as large, or without memory.
    explicit StripEncoder(const PictureFormat &format);
    ~StripEncoder();

    StripEncoder(const StripEncoder &) = delete;
    StripEncoder &operator=(const StripEncoder &) = delete;

    /// The strip's entropy-coded bytes, without any marker. Throws CaptureError without memory.
    [[nodiscard]] std::string_view encode(const PixelRows &rows);

    /// The bytes of a whole picture's file before the first strip, with `comment` in it (at most 65533 bytes).
    [[nodiscard]] static std::string head(const PictureFormat &format, std::string_view comment);

private:
    struct Jpeg;
    const std::unique_ptr<Jpeg> jpeg;
};

} // namespace orvalen
