#include "ui/kit/Motion.h"

#include <QStyle>
#include <QWidget>

namespace orvalen::kit {

bool mayMove(const QWidget &widget)
{
    return widget.isVisible() && widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget) > 0;
}

Glide::Glide(QWidget &widget, int milliseconds) : widget(widget)
{
    animation.setDuration(milliseconds);
    animation.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&animation, &QVariantAnimation::valueChanged, &widget, [this](const QVariant &value) {
        current = value.toDouble();
        this->widget.update();
    });
}

void Glide::jumpTo(double goal)
{
    animation.stop();
    if (current == goal)
        return;
    current = goal;
    widget.update();
}

void Glide::moveTo(double goal)
{
    if (!mayMove(widget)) {
        jumpTo(goal);
        return;
    }
    animation.stop();
    animation.setStartValue(current);
    animation.setEndValue(goal);
    animation.start();
}

FadingShade::FadingShade(QWidget &widget) : progress(widget, 160) {}

void FadingShade::set(const Shade &shade)
{
    if (isSet && to == shade)
        return;
    from = isSet ? shown() : shade;
    to = shade;
    isSet = true;
    progress.jumpTo(0.0);
    progress.moveTo(1.0);
}

void FadingShade::jumpTo(const Shade &shade)
{
    isSet = false;
    set(shade);
    progress.jumpTo(1.0);
}

} // namespace orvalen::kit
