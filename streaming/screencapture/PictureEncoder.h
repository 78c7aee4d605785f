#pragma once

#include <memory>
#include <span>
#include <vector>

#include "streaming/screencapture/CaptureBackEnd.h"
#include "streaming/screencapture/StripEncoder.h"
#include "streaming/screencapture/StripFile.h"

namespace orvalen {

/// How many threads to call to help, once a picture has turned out to need encoding.
///
/// `changed`: strips that had to be encoded up to now, the one at hand included. `left`: strips behind that one.
/// `isNew`: there is nothing to compare with. `most`: more threads would have no processor.
[[nodiscard]] unsigned helpersFor(unsigned changed, unsigned left, bool isNew, unsigned most);

/// Takes in one picture: strips that were there before keep their bytes, the others are encoded, on several threads if
/// there are many.
class PictureEncoder
{
public:
    /// `previous`: the strips of an earlier picture of the same format, or none. `threads`: at most, from 1 on.
    PictureEncoder(const PictureFormat &format, std::vector<EncodedStrip> previous, unsigned threads);

    /// Once. Throws CaptureError.
    void encode(Picture &picture);

    /// Of the picture that was encoded, from top to bottom; their bytes are the previous ones' or live here.
    [[nodiscard]] std::span<const EncodedStrip> strips() const { return encoded; }

    /// It looks like the previous one.
    [[nodiscard]] bool isUnchanged() const;

private:
    class Helpers;
    void work(Picture &picture, unsigned lane, Helpers *helpers);

    const PictureFormat format;
    const std::vector<EncodedStrip> previous;
    std::vector<EncodedStrip> encoded;
    std::vector<std::unique_ptr<StripEncoder>> encoders; ///< One for each lane, made when it is needed.
};

} // namespace orvalen
