#include "ui/kit/Slider.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "ui/kit/Accessibility.h"
#include "ui/kit/Keys.h"

namespace orvalen::kit {

namespace {

constexpr int knobSize = 18;
constexpr int grooveHeight = 4;
constexpr int controlHeight = 28; // room for the knob's shadow, and enough to be hit
constexpr int pageSteps = 2;
constexpr int notch = QWheelEvent::DefaultDeltasPerStep;

/// By how many places a key moves the knob.
std::optional<int> stepsFor(int key, bool isMirrored, int all)
{
    switch (key) {
    case Qt::Key_Right:
        return isMirrored ? -1 : 1;
    case Qt::Key_Left:
        return isMirrored ? 1 : -1;
    case Qt::Key_Up:
        return 1;
    case Qt::Key_Down:
        return -1;
    case Qt::Key_PageUp:
        return pageSteps;
    case Qt::Key_PageDown:
        return -pageSteps;
    case Qt::Key_Home:
        return -all;
    case Qt::Key_End:
        return all;
    default:
        return std::nullopt;
    }
}

} // namespace

Slider::Slider(const SliderScale &scale, QWidget *parent) : QWidget(parent), places(scale), shownValue(scale.from)
{
    installAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void Slider::setValue(double value)
{
    const auto before = std::exchange(shownValue, value);
    if (before == value || (std::isnan(before) && std::isnan(value)))
        return;
    update();
    announceValue(*this, value);
}

void Slider::setValueText(const QString &newText)
{
    text = newText;
}

void Slider::setAccent(const Accent &accent)
{
    if (color == accent)
        return;
    color = accent;
    update();
}

void Slider::choose(double value)
{
    if (std::isfinite(value) && value != shownValue)
        Q_EMIT chosen(value);
}

Outlined::Outline Slider::outline() const
{
    const int inset = (height() - knobSize) / 2;
    return {rect().adjusted(0, inset, 0, -inset), knobSize / 2};
}

QSize Slider::sizeHint() const
{
    return {160, controlHeight};
}

QSize Slider::minimumSizeHint() const
{
    return {4 * knobSize, controlHeight};
}

QRectF Slider::knob() const
{
    const double way = places.fraction(shownValue);
    const double x = (width() - knobSize) * (isRightToLeft() ? 1.0 - way : way);
    return {x, (height() - knobSize) / 2.0, knobSize, knobSize};
}

double Slider::fractionAt(double x) const
{
    const double way = (x - knobSize / 2.0) / (width() - knobSize);
    return isRightToLeft() ? 1.0 - way : way;
}

void Slider::mousePressEvent(QMouseEvent *event)
{
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    const double x = event->position().x();
    pressedAt = x;
    isDragged = false;
    grip = x - knob().center().x();
    if (std::abs(grip) <= knobSize / 2.0)
        return; // held, and moved when the pointer is
    grip = 0.0;
    choose(places.at(fractionAt(x)));
}

void Slider::mouseMoveEvent(QMouseEvent *event)
{
    if (!(event->buttons() & Qt::LeftButton))
        return;
    const double x = event->position().x();
    isDragged = isDragged || std::abs(x - pressedAt) >= QApplication::startDragDistance();
    if (isDragged) // no hand is quite still during a click
        choose(places.at(fractionAt(x - grip)));
}

void Slider::mouseReleaseEvent(QMouseEvent *event)
{
    event->setAccepted(event->button() == Qt::LeftButton);
}

void Slider::keyPressEvent(QKeyEvent *event)
{
    const auto steps = stepsFor(event->key(), isRightToLeft(), places.steps() + 1);
    if (steps && isAlone(*event))
        move(*steps);
    else
        QWidget::keyPressEvent(event);
}

void Slider::wheelEvent(QWheelEvent *event)
{
    if (!hasFocus())
        return event->ignore();
    const auto delta = event->angleDelta();
    const int turn =
        std::abs(delta.y()) >= std::abs(delta.x()) ? delta.y() : (isRightToLeft() ? delta.x() : -delta.x());
    if ((turn < 0) != (turned < 0)) // the other way
        turned = 0;
    turned += turn;
    if (const int steps = std::exchange(turned, turned % notch) / notch)
        move(steps);
    event->accept();
}

void Slider::focusOutEvent(QFocusEvent *event)
{
    QWidget::focusOutEvent(event);
    turned = 0;
}

void Slider::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::LayoutDirectionChange)
        update();
}

void Slider::paintEvent(QPaintEvent *)
{
    const auto handle = knob();
    const QRectF groove(0, (height() - grooveHeight) / 2.0, width(), grooveHeight);
    auto filled = groove;
    if (isRightToLeft())
        filled.setLeft(handle.center().x());
    else
        filled.setRight(handle.center().x());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    fadeWhereDisabled(painter, *this);
    painter.setBrush(neutral::groove.in(*this));
    painter.drawRoundedRect(groove, grooveHeight / 2.0, grooveHeight / 2.0);
    painter.setBrush(color.vivid.in(*this));
    painter.drawRoundedRect(filled, grooveHeight / 2.0, grooveHeight / 2.0);

    // A soft shadow, in rings that add up.
    painter.setBrush(QColor(0, 0, 0, 16));
    for (const double reach : std::array{0.5, 1.25, 2.0, 2.75})
        painter.drawEllipse(handle.translated(0, 1).adjusted(-reach, -reach, reach, reach));
    painter.setBrush(Qt::white);
    painter.setPen(QPen(QColor(0, 0, 0, 30), 1));
    painter.drawEllipse(handle.adjusted(0.5, 0.5, -0.5, -0.5));
}

} // namespace orvalen::kit
