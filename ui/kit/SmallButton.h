#pragma once

#include "ui/kit/Control.h"
#include "ui/kit/Shade.h"

namespace orvalen::kit {

/// A button for the second line: ink on a light tint of its accent.
class SmallButton : public Control
{
    Q_OBJECT

public:
    explicit SmallButton(QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setLabel(const QString &label);
    void setAccent(const Accent &accent);

    [[nodiscard]] QString label() const override { return text; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString text;
    Accent color = accent::blue;
};

} // namespace orvalen::kit
