#pragma once

#include <QWidget>

#include "ui/kit/Outlined.h"
#include "ui/kit/Shade.h"
#include "ui/kit/SliderScale.h"

namespace orvalen::kit {

/// Chooses one of the places of a scale: a click or a drag puts the knob there, an arrow key and the wheel go one place
/// on, a page key two, Home and End to the ends. The wheel is left to what scrolls unless the slider has the keyboard.
/// The value that it shows is the one it was given, also beyond the scale; only a person changes it.
class Slider : public QWidget, public Outlined
{
    Q_OBJECT

public:
    explicit Slider(const SliderScale &scale, QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setValue(double value);
    void setValueText(const QString &text); ///< What screen readers say for it.
    void setAccent(const Accent &accent);

    [[nodiscard]] const SliderScale &scale() const { return places; }
    [[nodiscard]] double value() const { return shownValue; }
    [[nodiscard]] const QString &valueText() const { return text; }
    [[nodiscard]] const Accent &accent() const { return color; }
    [[nodiscard]] Outline outline() const override;

    /// As a person does; the value follows from outside. What is no number chooses nothing.
    void choose(double value);
    void move(int steps) { choose(places.moved(shownValue, steps)); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void chosen(double value); ///< Another value than the one that was there.

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    [[nodiscard]] QRectF knob() const;
    [[nodiscard]] double fractionAt(double x) const;

    SliderScale places;
    double shownValue;
    QString text;
    Accent color = accent::blue;
    double grip = 0.0; // how far beside its centre the knob is held
    double pressedAt = 0.0;
    bool isDragged = false; // since then
    int turned = 0;         // of the wheel, less than a notch
};

} // namespace orvalen::kit
