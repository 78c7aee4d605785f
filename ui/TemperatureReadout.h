#pragma once

#include <QLabel>

#include "ui/kit/Motion.h"

namespace orvalen {

/// The large number with its unit. Takes the room of the widest number of two digits at least, so
/// that it stands still while it counts.
class TemperatureReadout : public QLabel
{
    Q_OBJECT

public:
    explicit TemperatureReadout(QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setCelsius(double celsius);
    void setShade(const kit::Shade &shade);

    [[nodiscard]] const kit::Shade &shade() const { return wantedShade; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    kit::Shade wantedShade{};
    kit::FadingShade fading;
};

} // namespace orvalen
