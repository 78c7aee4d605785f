#include "ui/kit/RowButton.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <algorithm>

#include "ui/kit/Symbols.h"

namespace orvalen::kit {

namespace {

constexpr Type type{.size = 11};
constexpr int padding = 10;
constexpr int verticalPadding = 8;
constexpr int leadingSize = 14;
constexpr int trailingSize = 11;
constexpr int gap = 7;
constexpr int besideTitle = 2 * padding + leadingSize + trailingSize + 2 * gap;

int titleHeight(const QFont &font, const QString &title, int width)
{
    return QFontMetrics(font).boundingRect(QRect(0, 0, width, 0), Qt::TextWordWrap, title).height();
}

} // namespace

RowButton::RowButton(Symbols symbols, QString title, QWidget *parent)
    : Control(parent), names(std::move(symbols)), title(std::move(title))
{
    setCursor(Qt::PointingHandCursor);
    auto policy = QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
}

void RowButton::setAccent(const Accent &accent)
{
    if (color == accent)
        return;
    color = accent;
    update();
}

Shadow RowButton::shadow() const
{
    return cardShadow(radius);
}

QSize RowButton::sizeHint() const
{
    const int width = textWidth(type.font(*this), title) + besideTitle;
    return {width, heightForWidth(width)};
}

QSize RowButton::minimumSizeHint() const
{
    const auto font = type.font(*this);
    int longestWord = 0;
    for (const auto &word : title.split(u' '))
        longestWord = std::max(longestWord, textWidth(font, word));
    return {longestWord + besideTitle, heightForWidth(longestWord + besideTitle)};
}

int RowButton::heightForWidth(int width) const
{
    return titleHeight(type.font(*this), title, width - besideTitle) + 2 * verticalPadding;
}

void RowButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    fadeWhereDisabled(painter, *this);
    paintCard(painter, *this, radius, neutral::text.at(isDown() ? 8 : isHovered() ? 4 : 0));

    const auto placed = [this](const QRect &place) { return QStyle::visualRect(layoutDirection(), rect(), place); };
    const auto square = [&](int x, int size) { return placed({x, (height() - size) / 2, size, size}); };
    paintSymbol(painter, square(padding, leadingSize), names.leading, color.ink.in(*this));
    paintSymbol(painter, square(width() - padding - trailingSize, trailingSize), names.trailing,
                neutral::secondary.in(*this));

    const int titleX = padding + leadingSize + gap;
    painter.setFont(type.font(*this));
    painter.setPen(neutral::text.in(*this));
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.drawText(placed({titleX, 0, width() - besideTitle, height()}),
                     QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading | Qt::AlignVCenter) |
                         Qt::AlignAbsolute | Qt::TextWordWrap,
                     title);
}

} // namespace orvalen::kit
