#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvalen {

/// A square black-and-white picture of a QR code, with the white margin that readers need.
struct QRCodeImage
{
    static constexpr int displaySize = 140; ///< Width and height in points, however many pixels there are.

    int side = 0;                     ///< Pixels a side.
    std::vector<std::uint8_t> pixels; ///< Row by row, one byte each: 0 black, 255 white.

    bool operator==(const QRCodeImage &) const = default;
};

/// Makes QR codes. Stateless; any thread.
class QRCodeHelper
{
public:
    /// The code of `text` (UTF-8) at error correction level "M"; std::nullopt if there is none (empty, too long, not
    /// UTF-8).
    [[nodiscard]] static std::optional<QRCodeImage> generateQRCode(std::string_view text);
};

} // namespace orvalen
