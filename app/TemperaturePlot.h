#pragma once

#include <QWidget>

#include <vector>

#include "app/SimulatedHistory.h"

namespace orvalen {

/// The last five minutes of a simulated laptop as curves over time, with the target as a dashed line and the warm-ups
/// shaded; above them a legend with the newest values.
class TemperaturePlot : public QWidget
{
    Q_OBJECT

public:
    explicit TemperaturePlot(QWidget *parent = nullptr);

    void add(const SimulatedHistory::Moment &moment);
    void setTarget(double celsius);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    struct Curve;
    class Canvas;

    [[nodiscard]] static const std::vector<Curve> &curves();
    void describe();

    SimulatedHistory history;
    double target = 40.0; // °C
};

} // namespace orvalen
