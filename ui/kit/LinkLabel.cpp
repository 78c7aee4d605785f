#include "ui/kit/LinkLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>

#include "ui/kit/Symbols.h"

namespace orvalen::kit {

namespace {

constexpr int smallestTarget = 24;
constexpr int symbolGap = 3;

} // namespace

LinkLabel::LinkLabel(QWidget *parent) : Control(parent)
{
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void LinkLabel::setLabel(const QString &label)
{
    if (text == label)
        return;
    text = label;
    updateGeometry();
    update();
}

void LinkLabel::setType(const Type &newType)
{
    if (type == newType)
        return;
    type = newType;
    updateGeometry();
    update();
}

void LinkLabel::setShade(const Shade &shade)
{
    if (color == shade)
        return;
    color = shade;
    update();
}

void LinkLabel::setSymbol(const QString &symbol)
{
    if (symbolName == symbol)
        return;
    symbolName = symbol;
    updateGeometry();
    update();
}

void LinkLabel::setTextAtTop(bool atTop)
{
    isTextAtTop = atTop;
    update();
}

int LinkLabel::symbolSize() const
{
    return type.size * 4 / 5;
}

QSize LinkLabel::sizeHint() const
{
    const auto font = type.font(*this);
    const int symbolRoom = symbolName.isEmpty() ? 0 : symbolGap + symbolSize();
    return {textWidth(font, text) + symbolRoom, std::max(lineHeight(font), smallestTarget)};
}

QSize LinkLabel::minimumSizeHint() const
{
    return {std::min(smallestTarget, sizeHint().width()), sizeHint().height()};
}

QRect LinkLabel::textPlace() const
{
    const int textHeight = lineHeight(type.font(*this));
    const QSize size(std::min(width(), sizeHint().width()), textHeight);
    return QStyle::visualRect(layoutDirection(), rect(), {{0, isTextAtTop ? 0 : (height() - textHeight) / 2}, size});
}

void LinkLabel::paintEvent(QPaintEvent *)
{
    auto font = type.font(*this);
    font.setUnderline(underMouse() || hasFocus());
    const auto shade = color.in(*this);
    const auto place = textPlace();
    const int symbolRoom = symbolName.isEmpty() ? 0 : symbolGap + symbolSize();
    auto textRect = place;
    if (isRightToLeft())
        textRect.setLeft(textRect.left() + symbolRoom);
    else
        textRect.setRight(textRect.right() - symbolRoom);

    QPainter painter(this);
    painter.setFont(font);
    painter.setPen(shade);
    painter.drawText(textRect, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, textRect.width()));
    if (symbolRoom) {
        const int x = isRightToLeft() ? place.left() : place.right() + 1 - symbolSize();
        paintSymbol(painter, QRect(x, place.center().y() - symbolSize() / 2, symbolSize(), symbolSize()), symbolName,
                    shade);
    }
}

} // namespace orvalen::kit
