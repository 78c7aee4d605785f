#pragma once

#include <QVariantAnimation>

#include "ui/kit/Shade.h"

class QWidget;

namespace orvalen::kit {

/// Whether things may move: the desktop's own answer.
[[nodiscard]] bool mayMove(const QWidget &widget);

/// A number that glides to its goal and has its widget painted meanwhile; where nothing may move it jumps.
class Glide
{
public:
    Glide(QWidget &widget, int milliseconds);

    [[nodiscard]] double value() const { return current; }
    void jumpTo(double goal);
    void moveTo(double goal);

private:
    QWidget &widget;
    QVariantAnimation animation;
    double current = 0.0;
};

/// A shade that fades over to the next one.
class FadingShade
{
public:
    explicit FadingShade(QWidget &widget);

    [[nodiscard]] Shade shown() const { return mixed(from, to, progress.value()); }
    void set(const Shade &shade);
    void jumpTo(const Shade &shade);

private:
    Glide progress;
    Shade from;
    Shade to;
    bool isSet = false;
};

} // namespace orvalen::kit
