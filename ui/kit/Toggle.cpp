#include "ui/kit/Toggle.h"

#include <QPainter>
#include <QStyle>

namespace orvalen::kit {

namespace {

constexpr QSize trackSize{38, 22};
constexpr int inset = 2;
constexpr Shade trackOn{accent::blue.solid.light, shade(0, 0x187CEC).dark}; // in the dark, solid is too near a card

} // namespace

Toggle::Toggle(QWidget *parent) : Control(parent), knob(*this, 140)
{
    setCheckable(true);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QRect Toggle::track() const
{
    // In line with what stands above and below it.
    const QPoint corner(width() - trackSize.width(), (height() - trackSize.height()) / 2);
    return QStyle::visualRect(layoutDirection(), rect(), {corner, trackSize});
}

Control::Outline Toggle::outline() const
{
    return {track(), trackSize.height() / 2};
}

void Toggle::checkStateSet()
{
    knob.moveTo(isChecked() ? 1.0 : 0.0);
}

void Toggle::nextCheckState()
{
    Control::nextCheckState();
    checkStateSet();
}

void Toggle::paintEvent(QPaintEvent *)
{
    const auto place = QRectF(track());
    const double diameter = trackSize.height() - 2 * inset;
    const double travel = trackSize.width() - 2 * inset - diameter;
    const double way = isRightToLeft() ? 1.0 - knob.value() : knob.value();

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    fadeWhereDisabled(painter, *this);
    painter.setBrush(mixed(neutral::groove, trackOn, knob.value()).in(*this));
    painter.drawRoundedRect(place, place.height() / 2, place.height() / 2);

    const QRectF circle(place.left() + inset + travel * way, place.top() + inset, diameter, diameter);
    painter.setBrush(QColor(0, 0, 0, 46));
    painter.drawEllipse(circle.translated(0, 1));
    painter.setBrush(Qt::white);
    painter.drawEllipse(circle);
}

} // namespace orvalen::kit
