#pragma once

#include "ui/kit/Control.h"
#include "ui/kit/Ground.h"
#include "ui/kit/Type.h"

namespace orvalen::kit {

/// A full-width row to press that leads somewhere: a symbol, a title that wraps where room is short, and at the far end
/// the symbol that tells where to.
class RowButton : public Control, public ShadowCaster
{
    Q_OBJECT

public:
    struct Symbols
    {
        QString leading;
        QString trailing;
    };

    RowButton(Symbols symbols, QString title, QWidget *parent = nullptr);

    void setAccent(const Accent &accent); ///< Of the leading symbol.

    [[nodiscard]] QString label() const override { return title; }
    [[nodiscard]] const Symbols &symbols() const { return names; }
    [[nodiscard]] const Accent &accent() const { return color; }
    [[nodiscard]] Outline outline() const override { return {rect(), radius}; }
    [[nodiscard]] Shadow shadow() const override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

    static constexpr int radius = 7;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Symbols names;
    QString title;
    Accent color = accent::blue;
};

} // namespace orvalen::kit
