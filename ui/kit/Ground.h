#pragma once

#include <QWidget>

#include <vector>

#include "ui/kit/Shade.h"

namespace orvalen::kit {

/// A soft shadow under a rounded rectangle. Without blur there is none.
struct Shadow
{
    int offset = 0; ///< Downwards.
    int blur = 0;   ///< How far the softness reaches.
    int radius = 0; ///< Of the rectangle's corners.
    Shade shade;
};

/// That of a card, and a card itself: a rounded rectangle with an edge, of one colour but for its tint.
[[nodiscard]] Shadow cardShadow(int radius);
void paintCard(QPainter &painter, const QWidget &widget, int radius, const Shade &tint);

/// A widget that throws a shadow. The ground on which it lies paints it, since a widget cannot paint beyond itself.
class ShadowCaster
{
public:
    virtual ~ShadowCaster() = default;
    [[nodiscard]] virtual Shadow shadow() const = 0;

protected:
    /// To call when another shadow is wanted.
    static void updateShadow(QWidget &caster);
};

/// A widget on which others lie and throw their shadows.
class Ground : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

    /// For overriding `paintEvent`: after the ground's own picture.
    void paintShadows(QPainter &painter) const;

private:
    mutable std::vector<QRect> shadowed; // where shadows were thrown when the ground was painted last
};

/// A filled column or page, with a line along one of its edges if wanted.
class Panel : public Ground
{
    Q_OBJECT

public:
    enum class EdgeLine
    {
        none,
        leading,
        trailing,
    };

    explicit Panel(const Shade &fill, EdgeLine edgeLine = EdgeLine::none, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Shade fill;
    EdgeLine edgeLine;
};

/// A rounded rectangle with an edge, tinted if wanted.
class Card : public Ground, public ShadowCaster
{
    Q_OBJECT

public:
    explicit Card(QWidget *parent = nullptr);

    void setTint(const Shade &tint);
    void setRadius(int radius);

    [[nodiscard]] const Shade &tintShade() const { return tint; }
    [[nodiscard]] Shadow shadow() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Shade tint{};
    int radius = 10;
};

} // namespace orvalen::kit
