#include "streaming/QRCodeHelper.h"

#include <cstddef>
#include <memory>

#include <qrencode.h>

#include "core/Text.h"

namespace orvalen {

namespace {

constexpr int modulePixels = 7;
constexpr int marginModules = 4;          ///< What the standard asks for around a code.
constexpr std::size_t longestText = 2331; ///< Bytes that the largest code holds at level "M".

} // namespace

std::optional<QRCodeImage> QRCodeHelper::generateQRCode(std::string_view text)
{
    if (text.empty() || text.size() > longestText || !text::isUtf8(text))
        return std::nullopt;
    const std::unique_ptr<QRcode, decltype(&QRcode_free)> code(
        QRcode_encodeData(static_cast<int>(text.size()), reinterpret_cast<const unsigned char *>(text.data()), 0,
                          QR_ECLEVEL_M),
        QRcode_free);
    if (!code)
        return std::nullopt;

    constexpr std::uint8_t black = 0;
    constexpr std::uint8_t white = 255;
    QRCodeImage image;
    image.side = (code->width + 2 * marginModules) * modulePixels;
    image.pixels.assign(static_cast<std::size_t>(image.side) * static_cast<std::size_t>(image.side), white);
    const int end = image.side - marginModules * modulePixels;
    for (int y = marginModules * modulePixels; y < end; ++y) {
        for (int x = marginModules * modulePixels; x < end; ++x) {
            const int module = (y / modulePixels - marginModules) * code->width + x / modulePixels - marginModules;
            if (code->data[module] & 1) // the lowest bit is the colour
                image.pixels[static_cast<std::size_t>(y * image.side + x)] = black;
        }
    }
    return image;
}

} // namespace orvalen
