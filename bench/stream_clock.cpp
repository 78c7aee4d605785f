#include "bench/stream_clock.h"

#include <csetjmp>
#include <cstdio>
#include <vector>

#include <jpeglib.h>

namespace orvalen::bench {

namespace {

struct Errors
{
    jpeg_error_mgr manager; // first: the library knows this part alone
    std::jmp_buf giveUp;
};

[[noreturn]] void giveUp(j_common_ptr decoder)
{
    std::longjmp(reinterpret_cast<Errors *>(decoder->err)->giveUp, 1);
}

/// The middle line of the squares in grey; false if the picture cannot be read that far. No object with a destructor
/// may live in here: errors jump over it.
bool decode(std::string_view jpeg, JSAMPLE *line, unsigned capacity)
{
    jpeg_decompress_struct decoder = {};
    Errors errors = {};
    decoder.err = jpeg_std_error(&errors.manager);
    errors.manager.error_exit = giveUp;
    errors.manager.output_message = [](j_common_ptr) {};
    if (setjmp(errors.giveUp)) {
        jpeg_destroy_decompress(&decoder);
        return false;
    }
    jpeg_create_decompress(&decoder);
    jpeg_mem_src(&decoder, reinterpret_cast<const unsigned char *>(jpeg.data()), jpeg.size());
    jpeg_read_header(&decoder, TRUE);
    decoder.out_color_space = JCS_GRAYSCALE;
    jpeg_start_decompress(&decoder);
    const bool fits = decoder.output_width <= capacity && decoder.output_width >= stream_clock::width;
    for (int row = 0; fits && row <= stream_clock::squareSize / 2; ++row)
        jpeg_read_scanlines(&decoder, &line, 1);
    jpeg_destroy_decompress(&decoder);
    return fits;
}

} // namespace

std::optional<std::int64_t> stream_clock::read(std::string_view jpeg, std::int64_t now)
{
    std::vector<JSAMPLE> line(8192);
    if (!decode(jpeg, line.data(), static_cast<unsigned>(line.size())))
        return std::nullopt;
    Squares squares{};
    for (std::size_t i = 0; i < squares.size(); ++i)
        squares[i] = line[i * squareSize + squareSize / 2] > 127;
    return timeOf(squares, now);
}

} // namespace orvalen::bench
