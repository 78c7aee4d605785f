#include "ui/kit/LinkLabel.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

#include "ui/kit/Symbols.h"
#include "ui/kit/TextLine.h"

namespace orvalen::kit {

namespace {

constexpr int smallestTarget = 24;
constexpr int symbolGap = 3;
constexpr int leadingSize = 13;
constexpr int leadingGap = 6;
constexpr int unlimited = 1 << 20;

/// Lays the text out; returns how wide the widest line is, rounded up.
int lay(QTextLayout &layout, int width, Qt::LayoutDirection direction)
{
    QTextOption option(QStyle::visualAlignment(direction, Qt::AlignLeading));
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setWrapMode(QTextOption::WordWrap);
    layout.setTextOption(option);
    return static_cast<int>(std::ceil(layOut(layout, width).width()));
}

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
    if (isTextAtTop == atTop)
        return;
    isTextAtTop = atTop;
    update();
}

void LinkLabel::setWraps(bool newWraps)
{
    if (wraps == newWraps)
        return;
    wraps = newWraps;
    auto policy = sizePolicy();
    policy.setHeightForWidth(wraps);
    setSizePolicy(policy);
    updateGeometry();
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

QSize LinkLabel::textSize(int width) const
{
    const int besideText = leadingRoom() + trailingRoom();
    QTextLayout layout(text, type.font(*this));
    const int widest = lay(layout, std::max(1, width - besideText), layoutDirection());
    return {widest + besideText, layout.lineCount() * lineHeight(layout.font())};
}

QSize LinkLabel::sizeHint() const
{
    const auto size = textSize(unlimited);
    return {size.width(), std::max(size.height(), smallestTarget)};
}

QSize LinkLabel::minimumSizeHint() const
{
    if (!wraps)
        return sizeHint();
    const int longestWord = textSize(1).width();
    return {longestWord, heightForWidth(longestWord)};
}

int LinkLabel::heightForWidth(int width) const
{
    if (!wraps)
        return -1;
    const int oneLine = lineHeight(type.font(*this));
    return textSize(width).height() + std::max(0, smallestTarget - oneLine); // around one line and around several
}

QRect LinkLabel::textPlace() const
{
    const auto size = textSize(wraps ? width() : unlimited).boundedTo({width(), height()});
    return QStyle::visualRect(layoutDirection(), rect(), {{0, isTextAtTop ? 0 : (height() - size.height()) / 2}, size});
}

void LinkLabel::paintEvent(QPaintEvent *)
{
    auto font = type.font(*this);
    font.setUnderline(isHovered() || hasFocus());
    const auto shade = color.in(*this);
    const auto place = textPlace();
    const auto within = [&](const QRect &part) { return QStyle::visualRect(layoutDirection(), place, part); };
    const auto textRect = within(place.adjusted(leadingRoom(), 0, -trailingRoom(), 0));

    QTextLayout layout(text, font);
    lay(layout, std::max(1, textRect.width()), layoutDirection());
    QPainter painter(this);
    fadeWhereDisabled(painter, *this);
    painter.setPen(shade);
    layout.draw(&painter, textRect.topLeft());

    // Each symbol is on the line that it begins or ends.
    const int line = lineHeight(font);
    const auto square = [&](int x, int y, int size) {
        return within({place.left() + x, y + (line - size + 1) / 2, size, size});
    };
    if (!leadingName.isEmpty())
        paintSymbol(painter, square(0, place.top(), leadingSize), leadingName, shade);
    if (!symbolName.isEmpty() && layout.lineCount() > 0) {
        const auto last = layout.lineAt(layout.lineCount() - 1);
        const int end = leadingRoom() + static_cast<int>(std::ceil(last.naturalTextWidth())) + symbolGap;
        paintSymbol(painter, square(end, place.top() + (layout.lineCount() - 1) * line, symbolSize()), symbolName,
                    shade);
    }
}

} // namespace orvalen::kit
