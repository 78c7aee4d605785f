#include "streaming/screencapture/StripEncoder.h"

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstdio> // which jpeglib.h needs

#include <jpeglib.h>
#include <sys/mman.h>

#include "streaming/screencapture/CaptureError.h"
#include "streaming/screencapture/Strips.h"

namespace orvalen {

namespace {

constexpr int blockSide = 16; // of an MCU, with colours at half the resolution

/// Address space of which nothing is taken before it is written to, so that the worst case costs nothing.
class Reserve
{
public:
    explicit Reserve(std::size_t size)
        : size(size),
          start(::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0))
    {
        if (start == MAP_FAILED)
            throw CaptureError("There is not enough memory for the picture.");
    }
    ~Reserve() { ::munmap(start, size); }

    Reserve(const Reserve &) = delete;
    Reserve &operator=(const Reserve &) = delete;

    [[nodiscard]] std::uint8_t *begin() const { return static_cast<std::uint8_t *>(start); }
    [[nodiscard]] std::uint8_t *end() const { return begin() + size; }

private:
    const std::size_t size;
    void *const start;
};

constexpr std::size_t roundedUp(int value, int unit)
{
    return static_cast<std::size_t>((value + unit - 1) / unit * unit);
}

/// More than any content can need: six blocks of 64 coefficients for 256 pixels, and 26 bits with stuffing at most for
/// each coefficient, would be 7; what baseline encoders really produce stays below 4.
std::size_t worstCase(const PictureFormat &format)
{
    return roundedUp(format.width, blockSide) * roundedUp(format.height, strips::rows) * 7 + 65536;
}

J_COLOR_SPACE colourSpace(PixelLayout layout)
{
    if (layout.red > layout.blue)
        return layout.blue == 0 ? JCS_EXT_BGRX : JCS_EXT_XBGR;
    return layout.red == 0 ? JCS_EXT_RGBX : JCS_EXT_XRGB;
}

} // namespace

/// The library's state. Its errors, which only a want of memory can cause, jump back to where the work began: no
/// frame of ours lies between.
struct StripEncoder::Jpeg
{
    explicit Jpeg(const PictureFormat &format, std::size_t capacity);
    ~Jpeg() { jpeg_destroy_compress(&compress); }

    /// Encodes, and returns where the entropy-coded bytes begin; nullptr after an error.
    const std::uint8_t *write(const PixelRows &rows);
    /// Ends a picture before its first row; false after an error.
    bool writeHead(std::string_view comment);

    const Reserve output;
    jpeg_compress_struct compress = {};
    jpeg_error_mgr errors = {};
    jpeg_destination_mgr destination = {};
    std::jmp_buf failure = {};

private:
    bool setUp(const PictureFormat &format);

    [[noreturn]] static void fail(j_common_ptr common)
    {
        std::longjmp(static_cast<Jpeg *>(common->client_data)->failure, 1);
    }
};

StripEncoder::Jpeg::Jpeg(const PictureFormat &format, std::size_t capacity) : output(capacity)
{
    if (std::max(format.width, format.height) > greatestSide)
        throw CaptureError("The display is larger than a JPEG picture can be.");
    compress.err = jpeg_std_error(&errors);
    errors.error_exit = fail;
    errors.output_message = [](j_common_ptr) {};
    compress.client_data = this;
    if (!setUp(format)) {
        jpeg_destroy_compress(&compress);
        throw CaptureError("There is not enough memory for the picture.");
    }
    destination.init_destination = [](j_compress_ptr) {};
    destination.term_destination = [](j_compress_ptr) {};
    destination.empty_output_buffer = [](j_compress_ptr compress) -> boolean {
        fail(reinterpret_cast<j_common_ptr>(compress));
    };
    destination.next_output_byte = output.begin();
    destination.free_in_buffer = capacity;
    compress.dest = &destination;
}

bool StripEncoder::Jpeg::setUp(const PictureFormat &format)
{
    if (setjmp(failure) != 0)
        return false;
    jpeg_create_compress(&compress);
    compress.client_data = this;
    compress.image_width = static_cast<JDIMENSION>(format.width);
    compress.image_height = static_cast<JDIMENSION>(format.height);
    compress.input_components = PixelLayout::bytes;
    compress.in_color_space = colourSpace(format.layout);
    jpeg_set_defaults(&compress); // which are: baseline, colours at half the resolution
    jpeg_set_quality(&compress, quality, TRUE);
    return true;
}

const std::uint8_t *StripEncoder::Jpeg::write(const PixelRows &rows)
{
    std::array<JSAMPROW, strips::rows> lines{};
    for (int i = 0; i < rows.area.height; ++i)
        lines[static_cast<std::size_t>(i)] = rows.row(i);
    if (setjmp(failure) != 0)
        return nullptr;
    compress.image_height = static_cast<JDIMENSION>(rows.area.height);
    compress.write_JFIF_header = FALSE;
    jpeg_suppress_tables(&compress, TRUE); // they stand in the head
    jpeg_start_compress(&compress, FALSE);
    jpeg_write_scanlines(&compress, lines.data(), 0); // no row yet, but all that stands before the first
    const std::uint8_t *const begin = destination.next_output_byte;
    while (compress.next_scanline < compress.image_height)
        jpeg_write_scanlines(&compress, lines.data() + compress.next_scanline,
                             compress.image_height - compress.next_scanline);
    jpeg_finish_compress(&compress);
    return begin;
}

bool StripEncoder::Jpeg::writeHead(std::string_view comment)
{
    if (setjmp(failure) != 0)
        return false;
    compress.restart_in_rows = strips::rows / blockSide;
    jpeg_start_compress(&compress, TRUE);
    jpeg_write_marker(&compress, JPEG_COM, reinterpret_cast<const JOCTET *>(comment.data()),
                      static_cast<unsigned>(comment.size()));
    jpeg_write_scanlines(&compress, nullptr, 0);
    jpeg_abort_compress(&compress);
    return true;
}

StripEncoder::StripEncoder(const PictureFormat &format) : jpeg(std::make_unique<Jpeg>(format, worstCase(format))) {}

StripEncoder::~StripEncoder() = default;

std::string_view StripEncoder::encode(const PixelRows &rows)
{
    constexpr std::size_t endMarker = 2;
    const std::uint8_t *const begin = jpeg->write(rows);
    if (!begin)
        throw CaptureError("There is not enough memory for the picture.");
    const std::uint8_t *const end = jpeg->destination.next_output_byte - endMarker;
    return {reinterpret_cast<const char *>(begin), static_cast<std::size_t>(end - begin)};
}

std::string StripEncoder::head(const PictureFormat &format, std::string_view comment)
{
    Jpeg jpeg(format, comment.size() + 65536);
    if (!jpeg.writeHead(comment))
        throw CaptureError("There is not enough memory for the picture.");
    return {jpeg.output.begin(), jpeg.destination.next_output_byte};
}

} // namespace orvalen
