#pragma once

#include <QColor>
#include <QRgb>

class QPainter;
class QWidget;

namespace orvalen::kit {

/// One colour as it is in the light theme and in the dark one.
struct Shade
{
    QRgb light = 0;
    QRgb dark = 0;

    /// At a part of its opacity.
    [[nodiscard]] constexpr Shade at(int percent) const { return {faded(light, percent), faded(dark, percent)}; }

    /// The colour for the theme that `widget` is in.
    [[nodiscard]] QColor in(const QWidget &widget) const;

    friend constexpr bool operator==(const Shade &, const Shade &) = default;

private:
    static constexpr QRgb faded(QRgb color, int percent)
    {
        return (((color >> 24) * static_cast<QRgb>(percent) + 50) / 100) << 24 | (color & 0xFFFFFF);
    }
};

constexpr Shade shade(QRgb light, QRgb dark)
{
    return {0xFF000000 | light, 0xFF000000 | dark};
}

/// `amount` from 0 (all `from`) to 1 (all `to`).
[[nodiscard]] Shade mixed(const Shade &from, const Shade &to, double amount);

/// `top` laid over an opaque `ground`.
[[nodiscard]] QColor over(const QColor &top, const QColor &ground);

/// From now on `widget` paints fainter if it is disabled.
void fadeWhereDisabled(QPainter &painter, const QWidget &widget);

namespace neutral {
inline constexpr Shade window = shade(0xF4F5F7, 0x1D1F23);
inline constexpr Shade panel = shade(0xE9EBEF, 0x25282D);
inline constexpr Shade card = shade(0xFFFFFF, 0x2B2E34);
inline constexpr Shade edge = shade(0x000000, 0xFFFFFF).at(8);
inline constexpr Shade text = shade(0x1C1C1E, 0xF2F3F5);
inline constexpr Shade columnEdge = text.at(6);
inline constexpr Shade secondary = shade(0x565A62, 0xAEB3BB);
inline constexpr Shade groove = shade(0x8B9098, 0x777D87);
inline constexpr Shade onSolid = shade(0xFFFFFF, 0xFFFFFF);
inline constexpr Shade focusRing = shade(0x0068E0, 0x7DBDFF);
} // namespace neutral

/// A colour in its tones. `vivid` is for dots and tints, `ink` for text and small symbols on any ground or tint,
/// `solid` for fills under white text, `large` for symbols of 20 px and more: vivid, where that stands out from light
/// grounds.
struct Accent
{
    Shade vivid;
    Shade ink;
    Shade solid;
    Shade large = vivid;

    friend constexpr bool operator==(const Accent &, const Accent &) = default;
};

namespace accent {
inline constexpr Accent blue{shade(0x007AFF, 0x3B9BFF), shade(0x0050C8, 0x7DBDFF), shade(0x0068E0, 0x0068E0)};
inline constexpr Accent green{shade(0x28A745, 0x32D266), shade(0x14632F, 0x4BE07E), shade(0x1C7F3A, 0x1C7F3A),
                              shade(0x1F8F3A, 0x32D266)};
inline constexpr Accent orange{shade(0xF08C00, 0xFFA733), shade(0x8F3F00, 0xFFB65C), shade(0xB45309, 0xB45309),
                               shade(0xCC6E00, 0xFFA733)};
inline constexpr Accent purple{shade(0x9B4DDB, 0xC77DFF), shade(0x6E2BA8, 0xD7A3FF), shade(0x8A3FCB, 0x8A3FCB)};
inline constexpr Accent indigo{shade(0x5856D6, 0x6E6BF2), shade(0x3F3DB8, 0xAEACFF), shade(0x4F4DC9, 0x4F4DC9)};
inline constexpr Accent red{shade(0xE5484D, 0xFF6961), shade(0xA8222B, 0xFF9A94), shade(0xC8323A, 0xC8323A)};
// These two are never a fill under text; their ink stands in.
inline constexpr Accent yellow{shade(0xD9A300, 0xFFD60A), shade(0x6B4C00, 0xFFDC33), shade(0x6B4C00, 0x6B4C00),
                               shade(0xA67C00, 0xFFD60A)};
inline constexpr Accent gray{shade(0x8E8E93, 0x98989D), shade(0x565A62, 0xB4B7BE), shade(0x565A62, 0x565A62),
                             shade(0x77777D, 0x98989D)};
} // namespace accent

} // namespace orvalen::kit
