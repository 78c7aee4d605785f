#pragma once

#include "ui/kit/Control.h"
#include "ui/kit/Motion.h"

namespace orvalen::kit {

/// A switch.
class Toggle : public Control
{
    Q_OBJECT

public:
    explicit Toggle(QWidget *parent = nullptr);

    QSize sizeHint() const override { return {44, 28}; }
    QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] QString label() const override { return accessibleName(); }
    [[nodiscard]] Outline outline() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void checkStateSet() override;
    void nextCheckState() override;

private:
    [[nodiscard]] QRect track() const;

    Glide knob; // 0 off, 1 on
};

} // namespace orvalen::kit
