#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "streaming/screencapture/Display.h"
#include "streaming/screencapture/Pixels.h"

namespace orvalen {

/// One display at one moment, the pointer drawn in, handed out in strips to several lanes of work.
class Picture
{
public:
    virtual ~Picture() = default;

    [[nodiscard]] virtual Rectangle area() const = 0;
    [[nodiscard]] virtual PixelLayout layout() const = 0;

    struct Strip
    {
        unsigned index = 0;
        PixelRows pixels;
    };

    /// The next strip that no lane has had; std::nullopt when there is none left. Its pixels stay for this lane alone,
    /// until it asks for the next. Throws CaptureError when the rest cannot be had. Lanes count from 0; each may live
    /// on a thread of its own.
    [[nodiscard]] virtual std::optional<Strip> next(unsigned lane) = 0;
};

/// One way to take a picture of the screen. All but Picture::next(): one thread.
class CaptureBackEnd
{
public:
    virtual ~CaptureBackEnd() = default;

    /// Why it cannot capture this session, as a sentence for people; empty if it can.
    [[nodiscard]] virtual std::string obstacle() = 0;
    [[nodiscard]] bool isAvailable() { return obstacle().empty(); }

    /// In any order. Like open() only for one that is available; both throw CaptureError.
    [[nodiscard]] virtual std::vector<Display> displays() = 0;

    /// Takes the picture of a display, for that many lanes. Lives no longer than the back end.
    [[nodiscard]] virtual std::unique_ptr<Picture> open(const Display &display, unsigned lanes) = 0;
};

using CaptureBackEnds = std::vector<std::unique_ptr<CaptureBackEnd>>;

/// The first that is available; throws CaptureError with the last one's obstacle if none is.
[[nodiscard]] CaptureBackEnd &firstAvailable(const CaptureBackEnds &backEnds);

} // namespace orvalen
