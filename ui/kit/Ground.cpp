#include "ui/kit/Ground.h"

#include <QEvent>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>

#include "ui/kit/StretchedPicture.h"

namespace orvalen::kit {

namespace {

/// Calls `visit` for each visible shadow caster on `ground` itself, not for those on a ground above it.
template <typename Visit>
void visitCasters(const QWidget &ground, const QWidget &branch, const Visit &visit)
{
    for (auto *child : branch.children()) {
        const auto *widget = qobject_cast<QWidget *>(child);
        if (!widget || widget->isHidden() || widget->isWindow())
            continue;
        if (const auto *caster = dynamic_cast<const ShadowCaster *>(widget))
            visit(*caster, QRect(widget->mapTo(&ground, QPoint(0, 0)), widget->size()));
        if (!qobject_cast<const Ground *>(widget))
            visitCasters(ground, *widget, visit);
    }
}

// Rings of one pixel, each adding its part: soft enough at these sizes, and cheap.
void paintRings(QPainter &painter, const Shadow &shadow, const QRectF &rect, QColor color)
{
    const double full = color.alphaF();
    double below = 0.0;
    painter.setPen(Qt::NoPen);
    for (int reach = shadow.blur; reach >= 0; --reach) {
        const double nearness = 1.0 - reach / (shadow.blur + 1.0);
        const double wanted = full * nearness * nearness;
        const double added = (wanted - below) / (1.0 - below); // what lies below shines through
        below = wanted;
        color.setAlphaF(static_cast<float>(added));
        painter.setBrush(color);
        const double grown = reach - shadow.blur / 3.0;
        painter.drawRoundedRect(rect.adjusted(-grown, -grown, grown, grown), shadow.radius + grown,
                                shadow.radius + grown);
    }
}

// Whoever throws it hides its middle.
void paintShadow(QPainter &painter, const Shadow &shadow, const QRect &rect, const QColor &color)
{
    const int reach = shadow.blur; // of the largest ring, and a little more
    const int hidden = std::max(shadow.radius, shadow.blur) + 1;
    StretchedPicture{
        .key = QStringLiteral("shadow/%1/%2/%3").arg(shadow.blur).arg(shadow.radius).arg(color.rgba(), 0, 16),
        .corner = reach + hidden,
        .paint =
            [&](QPainter &target, const QRect &place) {
                paintRings(target, shadow, QRectF(place).adjusted(reach, reach, -reach, -reach), color);
            },
    }
        .draw(painter, rect.translated(0, shadow.offset).adjusted(-reach, -reach, reach, reach));
}

} // namespace

void ShadowCaster::updateShadow(QWidget &caster)
{
    auto *ground = caster.parentWidget();
    while (ground && !qobject_cast<Ground *>(ground))
        ground = ground->parentWidget();
    if (ground)
        ground->update();
}

Shadow cardShadow(int radius)
{
    return {.offset = 1, .blur = 2, .radius = radius, .shade = {qRgba(0, 0, 0, 15), qRgba(0, 0, 0, 0)}};
}

void paintCard(QPainter &painter, const QWidget &widget, int radius, const Shade &tint)
{
    const auto fill = over(tint.in(widget), neutral::card.in(widget));
    const auto edge = neutral::edge.in(widget);
    const int corner = radius + 1;
    painter.fillRect(widget.rect().adjusted(corner, corner, -corner, -corner), fill);
    StretchedPicture{
        .key = QStringLiteral("card/%1/%2/%3").arg(radius).arg(fill.rgba(), 0, 16).arg(edge.rgba(), 0, 16),
        .corner = corner,
        .paint =
            [&](QPainter &target, const QRect &place) {
                target.setPen(Qt::NoPen);
                target.setBrush(fill);
                target.drawRoundedRect(place, radius, radius);
                target.setBrush(Qt::NoBrush);
                target.setPen(edge);
                target.drawRoundedRect(QRectF(place).adjusted(0.5, 0.5, -0.5, -0.5), radius - 0.5, radius - 0.5);
            },
    }
        .draw(painter, widget.rect());
}

bool Ground::event(QEvent *event)
{
    const bool result = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        std::vector<QRect> now;
        visitCasters(*this, *this, [&](const ShadowCaster &, const QRect &rect) { now.push_back(rect); });
        if (now != shadowed)
            update();
    } else if (event->type() == QEvent::PaletteChange) {
        update();
    }
    return result;
}

void Ground::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    paintShadows(painter);
}

void Ground::paintShadows(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    shadowed.clear();
    visitCasters(*this, *this, [&](const ShadowCaster &caster, const QRect &rect) {
        shadowed.push_back(rect);
        const auto shadow = caster.shadow();
        const auto color = shadow.shade.in(*this);
        if (shadow.blur > 0 && color.alpha() > 0)
            paintShadow(painter, shadow, rect, color);
    });
}

Panel::Panel(const Shade &fill, EdgeLine edgeLine, QWidget *parent) : Ground(parent), fill(fill), edgeLine(edgeLine)
{
    setAttribute(Qt::WA_OpaquePaintEvent); // what lies behind need not be painted
}

void Panel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.fillRect(rect(), fill.in(*this));
    if (edgeLine != EdgeLine::none) {
        const bool right = (edgeLine == EdgeLine::trailing) != isRightToLeft();
        painter.fillRect(right ? width() - 1 : 0, 0, 1, height(), neutral::columnEdge.in(*this));
    }
    paintShadows(painter);
}

Card::Card(QWidget *parent) : Ground(parent) {}

void Card::setTint(const Shade &newTint)
{
    if (tint == newTint)
        return;
    tint = newTint;
    update();
}

void Card::setRadius(int newRadius)
{
    radius = newRadius;
    update();
}

Shadow Card::shadow() const
{
    return cardShadow(radius);
}

void Card::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintCard(painter, *this, radius, tint);
    paintShadows(painter);
}

} // namespace orvalen::kit
