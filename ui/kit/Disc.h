#pragma once

#include <QLabel>

#include "ui/kit/Shade.h"

namespace orvalen::kit {

/// A filled circle, with a character or two in it if wanted: a dot, or a number.
class Disc : public QLabel
{
    Q_OBJECT

public:
    explicit Disc(int side, QWidget *parent = nullptr);

    /// Each does nothing where nothing changes.
    void setShade(const Shade &shade);
    void setWord(const QString &word);

    [[nodiscard]] const Shade &shade() const { return fill; }

    QSize sizeHint() const override { return {side, side}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int side;
    Shade fill{};
};

} // namespace orvalen::kit
