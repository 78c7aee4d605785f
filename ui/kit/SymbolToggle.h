#pragma once

#include "ui/kit/Control.h"
#include "ui/kit/Shade.h"

namespace orvalen::kit {

/// A switch that is a symbol: an outline while it is off, filled on a tinted capsule while it is on. As high as a badge
/// beside it. What is on is not for it to say: a press changes nothing but what whoever is told of it changes.
class SymbolToggle : public Control
{
    Q_OBJECT

public:
    struct Symbols
    {
        QString off;
        QString on;
    };

    explicit SymbolToggle(Symbols symbols, QWidget *parent = nullptr);

    [[nodiscard]] const QString &symbol() const { return isChecked() ? symbols.on : symbols.off; }
    [[nodiscard]] Shade shade() const;  ///< Of the symbol.
    [[nodiscard]] Shade ground() const; ///< Behind it, over whatever the toggle lies on.

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    [[nodiscard]] QString label() const override { return accessibleName(); }
    [[nodiscard]] Outline outline() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void nextCheckState() override {}

private:
    [[nodiscard]] int faceHeight() const;

    Symbols symbols;
};

} // namespace orvalen::kit
