#include "ui/kit/Type.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QFontMetricsF>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace orvalen::kit {

namespace {

constexpr double usualSystemFont = 13.0; // px
constexpr int smallestPlainSize = 10;    // anything smaller is hard to read unless it is heavier

/// Empty without any of them. Asking takes longer than painting a number does.
QString numberFamily()
{
    for (const char *family : {".AppleSystemUIFontRounded", "SF Pro Rounded", "Nunito", "Inter Display", "Inter"}) {
        if (QFontDatabase::hasFamily(family)) // a family that is not there would cost a search for its likes
            return family;
    }
    return {};
}

} // namespace

double textScale(const QFont &systemFont)
{
    return std::clamp(QFontInfo(systemFont).pixelSize() / usualSystemFont, 1.0, 1.25);
}

QFont Type::font(const QWidget &widget) const
{
    return font(widget.font());
}

QFont Type::font(const QFont &surroundings) const
{
    QFont font = surroundings;
    font.setPixelSize(static_cast<int>(std::lround(size * textScale(surroundings))));
    font.setWeight(
        static_cast<QFont::Weight>(size < smallestPlainSize ? std::max<int>(weight, QFont::DemiBold) : weight));
    if (capitals)
        font.setLetterSpacing(QFont::PercentageSpacing, 105);
    return font;
}

int lineHeight(const QFont &font)
{
    return static_cast<int>(std::lround(1.35 * font.pixelSize()));
}

int textWidth(const QFont &font, const QString &text)
{
    return static_cast<int>(std::ceil(QFontMetricsF(font).horizontalAdvance(text)));
}

QFont numberFont(const QWidget &widget, int size)
{
    QFont font = Type{.size = size, .weight = QFont::ExtraBold}.font(widget);
    static const auto family = numberFamily();
    if (!family.isEmpty())
        font.setFamily(family);
    font.setLetterSpacing(QFont::PercentageSpacing, 98);
    return font;
}

} // namespace orvalen::kit
