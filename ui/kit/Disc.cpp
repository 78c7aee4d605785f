#include "ui/kit/Disc.h"

#include <QPainter>

#include "ui/kit/Type.h"

namespace orvalen::kit {

Disc::Disc(int side, QWidget *parent) : QLabel(parent), side(side)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Disc::setShade(const Shade &shade)
{
    if (fill == shade)
        return;
    fill = shade;
    update();
}

void Disc::setWord(const QString &word)
{
    if (text() != word)
        setText(word);
}

void Disc::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill.in(*this));
    painter.drawEllipse(QRect(0, 0, side, side));
    if (text().isEmpty())
        return;
    painter.setPen(neutral::onSolid.in(*this));
    painter.setFont(Type{.size = side / 2 + 1, .weight = QFont::Bold}.font(*this));
    painter.drawText(QRect(0, 0, side, side), Qt::AlignCenter | Qt::TextSingleLine, text());
}

} // namespace orvalen::kit
