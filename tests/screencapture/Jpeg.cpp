#include "tests/screencapture/Jpeg.h"

#include <cstdio>
#include <cstdlib>
#include <jpeglib.h>
#include <random>
#include <stdexcept>

namespace orvalen::test {

Decoded::Colour Decoded::at(int x, int y) const
{
    const auto *const pixel = rgb.data() + static_cast<std::size_t>(y * width + x) * 3;
    return {pixel[0], pixel[1], pixel[2]};
}

Decoded decoded(std::string_view jpeg)
{
    jpeg_decompress_struct decompress = {};
    jpeg_error_mgr errors = {};
    decompress.err = jpeg_std_error(&errors);
    errors.error_exit = [](j_common_ptr) { throw std::runtime_error("no JPEG"); };
    errors.emit_message = [](j_common_ptr, int level) {
        if (level < 0)
            throw std::runtime_error("a JPEG with faults");
    };
    jpeg_create_decompress(&decompress);
    jpeg_mem_src(&decompress, reinterpret_cast<const unsigned char *>(jpeg.data()), jpeg.size());
    jpeg_read_header(&decompress, TRUE);
    decompress.out_color_space = JCS_RGB;
    jpeg_start_decompress(&decompress);
    Decoded picture{static_cast<int>(decompress.output_width), static_cast<int>(decompress.output_height), {}};
    picture.rgb.resize(std::size_t{decompress.output_width} * decompress.output_height * 3);
    while (decompress.output_scanline < decompress.output_height) {
        JSAMPROW row = picture.rgb.data() + std::size_t{decompress.output_scanline} * decompress.output_width * 3;
        jpeg_read_scanlines(&decompress, &row, 1);
    }
    jpeg_finish_decompress(&decompress);
    jpeg_destroy_decompress(&decompress);
    return picture;
}

std::string encodedAtOnce(const PictureFormat &format, const std::vector<std::uint8_t> &pixels, int restartInRows)
{
    jpeg_compress_struct compress = {};
    jpeg_error_mgr errors = {};
    compress.err = jpeg_std_error(&errors);
    jpeg_create_compress(&compress);
    unsigned char *memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&compress, &memory, &size);
    compress.image_width = static_cast<JDIMENSION>(format.width);
    compress.image_height = static_cast<JDIMENSION>(format.height);
    compress.input_components = 4;
    compress.in_color_space = format.layout == PixelLayout{0, 1, 2}   ? JCS_EXT_RGBX
                              : format.layout == PixelLayout{1, 2, 3} ? JCS_EXT_XRGB
                              : format.layout == PixelLayout{3, 2, 1} ? JCS_EXT_XBGR
                                                                      : JCS_EXT_BGRX;
    jpeg_set_defaults(&compress);
    jpeg_set_quality(&compress, StripEncoder::quality, TRUE);
    compress.restart_in_rows = restartInRows;
    jpeg_start_compress(&compress, TRUE);
    while (compress.next_scanline < compress.image_height) {
        auto *row =
            const_cast<JSAMPROW>(pixels.data() + std::size_t{compress.next_scanline} * compress.image_width * 4);
        jpeg_write_scanlines(&compress, &row, 1);
    }
    jpeg_finish_compress(&compress);
    jpeg_destroy_compress(&compress);
    std::string file(reinterpret_cast<const char *>(memory), size);
    std::free(memory);
    return file;
}

std::string withoutComments(std::string_view jpeg)
{
    std::string rest(jpeg.substr(0, 2));
    std::size_t at = 2;
    while (at + 4 <= jpeg.size() && jpeg[at] == '\xff') {
        const auto marker = static_cast<unsigned char>(jpeg[at + 1]);
        const auto length =
            std::size_t{static_cast<unsigned char>(jpeg[at + 2])} << 8 | static_cast<unsigned char>(jpeg[at + 3]);
        if (marker != 0xfe)
            rest += jpeg.substr(at, 2 + length);
        at += 2 + length;
        if (marker == 0xda)
            break; // what follows is the picture
    }
    return rest += jpeg.substr(at);
}

std::vector<std::uint8_t> drawnPixels(int width, int height, unsigned seed)
{
    std::mt19937 random(seed);
    std::vector<std::uint8_t> pixels;
    pixels.reserve(static_cast<std::size_t>(width * height) * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isNoise = (x / 40 + y / 24) % 3 == 0;
            const bool isText = (x / 40 + y / 24) % 3 == 1 && (x * 7 + y * 13 + static_cast<int>(seed)) % 5 < 2;
            for (int channel = 0; channel < 4; ++channel) {
                const int flat = 40 * (x / 100) + 50 * channel + static_cast<int>(seed);
                pixels.push_back(static_cast<std::uint8_t>(isNoise ? static_cast<int>(random()) : isText ? 0 : flat));
            }
        }
    }
    return pixels;
}

} // namespace orvalen::test
