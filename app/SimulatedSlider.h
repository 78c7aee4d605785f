#pragma once

#include <QSlider>

#include "core/Published.h"
#include "ui/kit/Shade.h"

namespace orvalen {

/// A slider for a whole number that a simulated laptop has: follows it and sets it.
class SimulatedSlider : public QSlider
{
    Q_OBJECT

public:
    struct Range
    {
        int from = 0;
        int to = 100;
        int page = 5; ///< What Page Up and Page Down move by; the arrows move by one.
    };

    /// `name` is for screen readers. `value` must outlive the slider.
    SimulatedSlider(Published<double> &value, const Range &range, const QString &name, const kit::Accent &accent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    [[nodiscard]] QRectF travel() const;
    void moveTo(double x);

    kit::Accent accent;
};

} // namespace orvalen
