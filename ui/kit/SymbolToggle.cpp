#include "ui/kit/SymbolToggle.h"

#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/kit/Symbols.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

namespace {

constexpr Type badgeType{.size = 10};
constexpr int badgePadding = 5;
constexpr int faceWidth = 30;
constexpr int symbolSize = 16;  // the size for which they are drawn: thin lines are one pixel wide
constexpr int leastHeight = 24; // of what can be hit

} // namespace

SymbolToggle::SymbolToggle(Symbols symbols, QWidget *parent) : Control(parent), symbols(std::move(symbols))
{
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

Shade SymbolToggle::shade() const
{
    return isChecked() ? accent::blue.ink : neutral::text;
}

Shade SymbolToggle::ground() const
{
    if (isChecked())
        return accent::blue.vivid.at(isDown() || isHovered() ? 20 : 15);
    return neutral::text.at(isDown() ? 10 : isHovered() ? 5 : 0);
}

int SymbolToggle::faceHeight() const
{
    return static_cast<int>(std::lround(1.2 * badgeType.font(*this).pixelSize())) + 2 * badgePadding;
}

QSize SymbolToggle::sizeHint() const
{
    return {faceWidth, std::max(leastHeight, faceHeight())};
}

// What can be hit goes on below it where it is small.
Control::Outline SymbolToggle::outline() const
{
    return {{0, 0, width(), faceHeight()}, faceHeight() / 2};
}

void SymbolToggle::paintEvent(QPaintEvent *)
{
    const QRect face = outline().rect;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fadeWhereDisabled(painter, *this);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground().in(*this));
    painter.drawRoundedRect(face, face.height() / 2.0, face.height() / 2.0);
    QRect place(0, 0, symbolSize, symbolSize);
    place.moveCenter(face.center());
    paintSymbol(painter, place, symbol(), shade().in(*this));
}

} // namespace orvalen::kit
