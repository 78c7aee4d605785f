#include "app/SimulatedSlider.h"

#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

#include "ui/kit/Live.h"

namespace orvalen {

namespace {

constexpr double grooveHeight = 4.0;
constexpr double knobSize = 18.0;

} // namespace

SimulatedSlider::SimulatedSlider(Published<double> &value, const Range &range, const QString &name,
                                 const kit::Accent &accent)
    : QSlider(Qt::Horizontal), accent(accent)
{
    setRange(range.from, range.to);
    setSingleStep(1);
    setPageStep(range.page);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(name);
    kit::Live<double>(value).follow(*this, [this](double now) { setValue(static_cast<int>(std::lround(now))); });
    connect(this, &QSlider::valueChanged, this, [&value](int now) {
        if (std::lround(value.value()) != now)
            value = now;
    });
}

QSize SimulatedSlider::sizeHint() const
{
    return {120, 24};
}

// Where the middle of the knob can be.
QRectF SimulatedSlider::travel() const
{
    constexpr double inset = knobSize / 2.0 + 1.0;
    return QRectF(rect()).adjusted(inset, 0, -inset, 0);
}

void SimulatedSlider::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);

    const double share = double(value() - minimum()) / std::max(1, maximum() - minimum());
    const double middle = travel().left() + (isRightToLeft() ? 1.0 - share : share) * travel().width();
    const auto fill = [&](double from, double to, const kit::Shade &shade) {
        painter.setBrush(shade.in(*this));
        painter.drawRoundedRect(QRectF(from, (height() - grooveHeight) / 2.0, to - from, grooveHeight),
                                grooveHeight / 2.0, grooveHeight / 2.0);
    };
    fill(0, width(), kit::neutral::groove);
    if (isRightToLeft())
        fill(middle, width(), accent.vivid);
    else
        fill(0, middle, accent.vivid);

    const QRectF knob(middle - knobSize / 2.0, (height() - knobSize) / 2.0, knobSize, knobSize);
    for (const double spread : {1.5, 0.75}) { // its shadow, downwards
        painter.setBrush(QColor(0, 0, 0, 28));
        painter.drawEllipse(knob.translated(0, 1).adjusted(-spread, -spread / 2, spread, spread));
    }
    painter.setPen(QPen(QColor(0, 0, 0, 40), 1));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knob.adjusted(0.5, 0.5, -0.5, -0.5));
}

void SimulatedSlider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton)
        moveTo(event->position().x());
}

void SimulatedSlider::mouseMoveEvent(QMouseEvent *event)
{
    if (event->buttons() & Qt::LeftButton)
        moveTo(event->position().x());
}

void SimulatedSlider::moveTo(double x)
{
    const double share = std::clamp((x - travel().left()) / travel().width(), 0.0, 1.0);
    setValue(minimum() +
             static_cast<int>(std::lround((isRightToLeft() ? 1.0 - share : share) * (maximum() - minimum()))));
}

// Not while somebody scrolls past it.
void SimulatedSlider::wheelEvent(QWheelEvent *event)
{
    if (hasFocus())
        QSlider::wheelEvent(event);
    else
        event->ignore();
}

} // namespace orvalen
