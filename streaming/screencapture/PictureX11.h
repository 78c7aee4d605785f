#pragma once

#include <deque>
#include <mutex>
#include <optional>
#include <vector>
#include <xcb/xcb.h>

#include "platform/linux/X11Session.h"
#include "streaming/screencapture/CaptureBackEnd.h"
#include "streaming/screencapture/Pointer.h"

namespace orvalen {

/// Memory that an X server writes pictures into.
class SharedMemoryX11
{
public:
    /// Of no size where the server does not share memory with us.
    SharedMemoryX11(xcb_connection_t *xcb, std::size_t size);
    ~SharedMemoryX11();

    SharedMemoryX11(const SharedMemoryX11 &) = delete;
    SharedMemoryX11 &operator=(const SharedMemoryX11 &) = delete;

    /// Whether it can be used. Asks the server, at the first time.
    [[nodiscard]] bool isShared();

    [[nodiscard]] std::uint8_t *data() const { return start; }
    [[nodiscard]] std::uint32_t segment() const { return id; }

private:
    xcb_connection_t *const xcb;
    const std::size_t size;
    std::uint8_t *start = nullptr;
    std::uint32_t id = 0;
    std::optional<xcb_void_cookie_t> attaching;
};

/// Part of an X server's root window. The server serves nobody else from the construction on until it has read the last
/// strip, or until the connection ends: how ever long that takes, it is less than a picture of a second moment costs.
///
/// There is memory for one strip more than lanes have come for: what the server fills while they work.
class PictureX11 : public Picture
{
public:
    /// The connection must outlive it.
    PictureX11(xcb_connection_t *xcb, xcb_window_t root, const Rectangle &area, PixelLayout layout, unsigned lanes);

    [[nodiscard]] Rectangle area() const override { return whole; }
    [[nodiscard]] PixelLayout layout() const override { return pixelLayout; }
    [[nodiscard]] std::optional<Strip> next(unsigned lane) override;

private:
    /// A strip that the server was asked for, or has given.
    struct Question
    {
        unsigned index = 0;
        unsigned place = 0; ///< In the shared memory, counted in strips.
        unsigned sequence = 0;
    };

    struct Lane
    {
        bool hasCome = false;
        std::optional<unsigned> place;           ///< Of the strip that it works on.
        x11::Reply<xcb_get_image_reply_t> image; ///< The strip itself, where no memory is shared.
    };

    void readPointer();
    void askAhead();
    [[nodiscard]] std::uint8_t *answer(const Question &question, Lane &lane);

    xcb_connection_t *const xcb;
    const xcb_window_t root;
    const Rectangle whole;
    const PixelLayout pixelLayout;
    SharedMemoryX11 memory;
    bool isShared = false;
    Pointer pointer;

    /// Guards all that follows, and is held while one waits for the server: strips come in order, so who comes later
    /// waits for a later one. (With several threads waiting inside of xcb a connection's end may be told to one alone.)
    std::mutex mutex;
    std::vector<Lane> lanes;
    std::vector<unsigned> freePlaces;
    std::deque<Question> questions; ///< Not yet answered.
    unsigned nextStrip = 0;
};

} // namespace orvalen
