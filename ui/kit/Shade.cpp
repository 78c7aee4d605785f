#include "ui/kit/Shade.h"

#include <QPainter>
#include <QPalette>
#include <QWidget>

#include <cmath>

#include "ui/kit/Theme.h"

namespace orvalen::kit {

namespace {

QRgb mixed(QRgb from, QRgb to, double amount)
{
    const auto channel = [&](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * amount)); };
    return qRgba(channel(qRed(from), qRed(to)), channel(qGreen(from), qGreen(to)), channel(qBlue(from), qBlue(to)),
                 channel(qAlpha(from), qAlpha(to)));
}

} // namespace

QColor Shade::in(const QWidget &widget) const
{
    return QColor::fromRgba(isDark(widget.palette()) ? dark : light);
}

Shade mixed(const Shade &from, const Shade &to, double amount)
{
    return {mixed(from.light, to.light, amount), mixed(from.dark, to.dark, amount)};
}

QColor over(const QColor &top, const QColor &ground)
{
    const double a = top.alphaF();
    const auto channel = [a](double t, double g) { return static_cast<float>(t * a + g * (1 - a)); };
    return QColor::fromRgbF(channel(top.redF(), ground.redF()), channel(top.greenF(), ground.greenF()),
                            channel(top.blueF(), ground.blueF()));
}

void fadeWhereDisabled(QPainter &painter, const QWidget &widget)
{
    if (!widget.isEnabled())
        painter.setOpacity(0.45);
}

} // namespace orvalen::kit
