#include "ui/kit/SmallButton.h"

#include <QFontMetrics>
#include <QPainter>

#include "ui/kit/Type.h"

namespace orvalen::kit {

namespace {

constexpr Type type{.size = 11, .weight = QFont::DemiBold};
constexpr int buttonHeight = 24;
constexpr int padding = 9;
constexpr int radius = 6;

} // namespace

SmallButton::SmallButton(QWidget *parent) : Control(parent)
{
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SmallButton::setLabel(const QString &label)
{
    if (text == label)
        return;
    text = label;
    updateGeometry();
    update();
}

void SmallButton::setAccent(const Accent &accent)
{
    if (color == accent)
        return;
    color = accent;
    update();
}

QSize SmallButton::sizeHint() const
{
    return {textWidth(type.font(*this), text) + 2 * padding, buttonHeight};
}

void SmallButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fadeWhereDisabled(painter, *this);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color.vivid.at(isDown() ? 18 : isHovered() ? 16 : 13).in(*this));
    painter.drawRoundedRect(rect(), radius, radius);
    painter.setFont(type.font(*this));
    painter.setPen(color.ink.in(*this));
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text);
}

} // namespace orvalen::kit
