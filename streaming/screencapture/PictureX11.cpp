#include "streaming/screencapture/PictureX11.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>
#include <xcb/shm.h>
#include <xcb/xfixes.h>

#include "streaming/screencapture/CaptureError.h"
#include "streaming/screencapture/Strips.h"

namespace orvalen {

namespace {

using x11::Reply;

constexpr std::uint32_t allPlanes = ~std::uint32_t{0};

bool has(xcb_connection_t *xcb, xcb_extension_t &extension)
{
    const auto *const data = xcb_get_extension_data(xcb, &extension);
    return data && data->present;
}

/// Descriptors travel over local sockets only; elsewhere the attempt would cost the connection.
bool isLocal(xcb_connection_t *xcb)
{
    sockaddr_storage address{};
    socklen_t length = sizeof address;
    return ::getsockname(xcb_get_file_descriptor(xcb), reinterpret_cast<sockaddr *>(&address), &length) == 0 &&
           address.ss_family == AF_UNIX;
}

std::size_t stripBytes(const Rectangle &picture)
{
    return static_cast<std::size_t>(picture.width) * PixelLayout::bytes * strips::rows;
}

} // namespace

SharedMemoryX11::SharedMemoryX11(xcb_connection_t *xcb, std::size_t size) : xcb(xcb), size(size)
{
    if (!has(xcb, xcb_shm_id) || !isLocal(xcb))
        return;
    // Without a name: it cannot outlive both of us.
    const int file = ::memfd_create("strips", MFD_CLOEXEC);
    if (file < 0)
        return;
    void *const mapped = ::ftruncate(file, static_cast<off_t>(size)) == 0
                             ? ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0)
                             : MAP_FAILED;
    if (mapped == MAP_FAILED) {
        ::close(file);
        return;
    }
    start = static_cast<std::uint8_t *>(mapped);
    id = xcb_generate_id(xcb);
    attaching = xcb_shm_attach_fd_checked(xcb, id, file, false); // which closes the file
}

SharedMemoryX11::~SharedMemoryX11()
{
    if (start)
        ::munmap(start, size);
}

bool SharedMemoryX11::isShared()
{
    if (attaching) {
        const Reply<xcb_generic_error_t> error(xcb_request_check(xcb, *attaching));
        attaching.reset();
        if (error)
            id = 0;
    }
    return id != 0;
}

PictureX11::PictureX11(xcb_connection_t *xcb, xcb_window_t root, const Rectangle &area, PixelLayout layout,
                       unsigned lanes)
    : xcb(xcb),
      root(root),
      whole(area),
      pixelLayout(layout),
      memory(xcb, stripBytes(area) * (lanes + 1)),
      lanes(lanes),
      freePlaces{0}
{
    xcb_grab_server(xcb);
    readPointer();
    isShared = memory.isShared();
}

void PictureX11::readPointer()
{
    if (!has(xcb, xcb_xfixes_id))
        return;
    const Reply<xcb_xfixes_get_cursor_image_reply_t> image(
        xcb_xfixes_get_cursor_image_reply(xcb, xcb_xfixes_get_cursor_image(xcb), nullptr));
    if (!image)
        return; // no pointer at all
    const auto size = static_cast<std::size_t>(image->width) * image->height;
    if (static_cast<std::size_t>(xcb_xfixes_get_cursor_image_cursor_image_length(image.get())) < size)
        return;
    pointer.area = {image->x - image->xhot, image->y - image->yhot, image->width, image->height};
    const auto *const colours = xcb_xfixes_get_cursor_image_cursor_image(image.get());
    pointer.colours.assign(colours, colours + size);
}

void PictureX11::askAhead()
{
    const auto count = strips::count(whole.height);
    if (freePlaces.empty() || nextStrip == count)
        return;
    while (!freePlaces.empty() && nextStrip < count) {
        Question question{.index = nextStrip++, .place = freePlaces.back()};
        freePlaces.pop_back();
        const auto area = strips::area(whole, question.index);
        const auto x = static_cast<std::int16_t>(area.x);
        const auto y = static_cast<std::int16_t>(area.y);
        const auto width = static_cast<std::uint16_t>(area.width);
        const auto height = static_cast<std::uint16_t>(area.height);
        const auto offset = static_cast<std::uint32_t>(question.place * stripBytes(whole));
        constexpr auto format = XCB_IMAGE_FORMAT_Z_PIXMAP;
        question.sequence =
            isShared ? xcb_shm_get_image(xcb, root, x, y, width, height, allPlanes, format, memory.segment(), offset)
                           .sequence
                     : xcb_get_image(xcb, format, root, x, y, width, height, allPlanes).sequence;
        questions.push_back(question);
    }
    if (nextStrip == count)
        xcb_ungrab_server(xcb);
    xcb_flush(xcb);
}

std::uint8_t *PictureX11::answer(const Question &question, Lane &lane)
{
    if (isShared) {
        const Reply<xcb_shm_get_image_reply_t> reply(xcb_shm_get_image_reply(xcb, {question.sequence}, nullptr));
        return reply ? memory.data() + question.place * stripBytes(whole) : nullptr;
    }
    lane.image.reset(xcb_get_image_reply(xcb, {question.sequence}, nullptr));
    const PixelRows wanted{nullptr, strips::area(whole, question.index)};
    if (!lane.image || static_cast<std::size_t>(xcb_get_image_data_length(lane.image.get())) < wanted.bytes())
        return nullptr;
    return xcb_get_image_data(lane.image.get());
}

std::optional<Picture::Strip> PictureX11::next(unsigned lane)
{
    std::unique_lock lock(mutex);
    auto &mine = lanes[lane];
    if (!mine.hasCome)
        freePlaces.push_back(lane + 1);
    else if (mine.place)
        freePlaces.push_back(*mine.place);
    mine.hasCome = true;
    mine.place.reset();
    askAhead();
    if (questions.empty())
        return std::nullopt;
    const auto question = questions.front();
    questions.pop_front();
    auto *const data = answer(question, mine);
    if (!data)
        throw CaptureError("The display server has gone, or does not show its screen.");
    mine.place = question.place;
    lock.unlock();
    const Strip strip{question.index, {data, strips::area(whole, question.index)}};
    draw(pointer, strip.pixels, pixelLayout);
    return strip;
}

} // namespace orvalen
