#include "ui/kit/SymbolLabel.h"

#include <QEvent>
#include <QPainter>

#include "ui/kit/Accessibility.h"
#include "ui/kit/Symbols.h"

namespace orvalen::kit {

namespace {

constexpr int largeSymbol = 20;

} // namespace

SymbolLabel::SymbolLabel(int size, std::optional<Tile> tile, QWidget *parent)
    : QWidget(parent), size(size), tile(std::move(tile))
{
    hideFromReaders(*this);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolLabel::setSymbol(const QString &symbol)
{
    if (name == symbol)
        return;
    name = symbol;
    update();
}

void SymbolLabel::setAccent(const Accent &accent)
{
    backdrop = accent.vivid;
    setShade(size >= largeSymbol ? accent.large : accent.ink);
}

void SymbolLabel::setShade(const Shade &shade)
{
    if (color == shade)
        return;
    color = shade;
    update();
}

QSize SymbolLabel::sizeHint() const
{
    const int side = tile ? tile->side : size;
    return {side, side};
}

void SymbolLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (tile) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(backdrop.at(tile->tint).in(*this));
        painter.drawRoundedRect(rect(), tile->radius, tile->radius);
    }
    const QRect place((width() - size) / 2, (height() - size) / 2, size, size);
    paintSymbol(painter, place, name, color.in(*this));
}

void SymbolLabel::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
}

} // namespace orvalen::kit
