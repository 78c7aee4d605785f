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
constexpr int leadingSize = 13;
constexpr int leadingGap = 6;

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

void LinkLabel::setLeadingSymbol(const QString &symbol)
{
    if (leadingName == symbol)
        return;
    leadingName = symbol;
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

int LinkLabel::leadingRoom() const
{
    return leadingName.isEmpty() ? 0 : leadingSize + leadingGap;
}

int LinkLabel::trailingRoom() const
{
    return symbolName.isEmpty() ? 0 : symbolGap + symbolSize();
}

QSize LinkLabel::sizeHint() const
{
    const auto font = type.font(*this);
    return {leadingRoom() + textWidth(font, text) + trailingRoom(), std::max(lineHeight(font), smallestTarget)};
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
    const auto within = [&](const QRect &part) { return QStyle::visualRect(layoutDirection(), place, part); };
    const auto square = [&](int x, int size) {
        return within({x, place.top() + (place.height() - size + 1) / 2, size, size});
    };
    const auto textRect = within(place.adjusted(leadingRoom(), 0, -trailingRoom(), 0));

    QPainter painter(this);
    painter.setFont(font);
    painter.setPen(shade);
    painter.drawText(textRect, Qt::AlignLeading | Qt::AlignVCenter | Qt::TextSingleLine,
                     QFontMetrics(font).elidedText(text, Qt::ElideRight, textRect.width()));
    if (!leadingName.isEmpty())
        paintSymbol(painter, square(place.left(), leadingSize), leadingName, shade);
    if (!symbolName.isEmpty())
        paintSymbol(painter, square(place.right() + 1 - symbolSize(), symbolSize()), symbolName, shade);
}

} // namespace orvalen::kit
